#include "tools/calibration/check.hpp"

#include "core/config/config_document.hpp"
#include "settings/reg_ex.hpp"
#include "tools/calibration/check_calibration_file.hpp"
#include "tools/calibration/check_config.hpp"
#include "tools/calibration/check_settings.hpp"
#include "tools/calibration/file_names.hpp"
#include "tools/calibration/item_finder.hpp"
#include "tools/calibration/user_calibration.hpp"
#include "tools/commands/json_output.hpp"
#include "tools/commands/text.hpp"

#include <nlohmann/json.hpp>

namespace tallowmere::tools {
namespace {

using platform::Platform;

constexpr int kProblems = exit_code::kNotFound;

/// True when the user's settings, not the default alone, have the item in use.
bool isSwitchedOn(Platform& platform, std::size_t id) {
    CRegEx key(platform);
    key.Open(kCalibrationKey);
    return key.findWholeDword(indexedName(u"CalUse_", id)).value_or(0) != 0;
}

bool hasFileSetting(Platform& platform, std::size_t id) {
    CRegEx key(platform);
    key.Open(kCalibrationKey);
    return key.findString(indexedName(u"CalFile_", id)).has_value();
}

/// Four items are in use from the start, so their missing files are no news.
void checkItemFile(Platform& platform, UserCalibration& user, std::size_t id, Findings& findings) {
    const CalibrationItem& item = user.item(id);
    if (platform.exists(item.file)) return checkCalibrationFile(platform, item.file, id, findings);
    if (isSwitchedOn(platform, id) && !hasFileSetting(platform, id))
        findings.add(item.file, 0, "is missing, though " + tools::inQuotes(item.name) + " is in use",
                     "the table is empty and gives no correction");
}

void checkEverything(const CommandContext& context, Findings& findings) {
    Platform& platform = context.platform;
    UserCalibration user(platform);
    for (const platform::SettingsComplaint& complaint : context.settingsComplaints())
        findings.add(complaint.file, complaint.line, complaint.what, complaint.effect);
    checkCoreSettings(platform, findings);
    checkBoatsFile(platform, user.configFile(u"boats.xml"), findings);
    checkChannelsFile(platform, user.configFile(u"channels.xml"), findings);
    checkAlternateFile(platform, user.configFile(u"alternate.csv"), findings);
    checkCalibrationSettings(platform, std::nullopt, findings);
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) checkItemFile(platform, user, id, findings);
}

void checkItem(Platform& platform, std::size_t id, Findings& findings) {
    UserCalibration user(platform);
    checkCalibrationSettings(platform, id, findings);
    checkItemFile(platform, user, id, findings);
}

std::optional<std::size_t> itemOfFile(std::u16string_view name) {
    for (const CalibrationItemDef& row : kCalibrationItems)
        if (equalsIgnoringCase(name, std::u16string(u"ZAN_CAL_") + row.name + u".txt"))
            return static_cast<std::size_t>(row.id);
    return std::nullopt;
}

bool beginsWithChannels(const Platform& platform, const std::u16string& path) {
    const auto reader = platform.openXml(path);
    platform::XmlElement root;
    return reader != nullptr && reader->next(root) && equalsIgnoringCase(root.name, u"channels");
}

/// Its name tells what a file is; an XML document under another name its first element.
void checkFile(const Platform& platform, const std::u16string& path, Findings& findings) {
    const std::u16string name = path.substr(path.find_last_of(platform.separator() == u'\\' ? u"\\/:" : u"/") + 1);
    const std::u16string_view extension = std::u16string_view(name).substr(std::min(name.rfind(u'.'), name.size()));
    const bool xml = equalsIgnoringCase(extension, u".xml");
    if (equalsIgnoringCase(name, u"alternate.csv")) return checkAlternateFile(platform, path, findings);
    if (!xml) return checkCalibrationFile(platform, path, itemOfFile(name), findings);
    const bool boats = equalsIgnoringCase(name, u"boats.xml");
    if (!boats && (equalsIgnoringCase(name, u"channels.xml") || beginsWithChannels(platform, path)))
        return checkChannelsFile(platform, path, findings);
    checkBoatsFile(platform, path, findings);
}

Json jsonOf(const Findings& findings) {
    Json problems = Json::array();
    for (const Problem& problem : findings.kept())
        problems.push_back({{"place", problem.place},
                            {"line", problem.line == 0 ? Json() : Json(problem.line)},
                            {"what", problem.what},
                            {"effect", problem.effect}});
    return {{"count", findings.count()}, {"problems", std::move(problems)}};
}

int summarise(const CommandContext& context, const Findings& findings, bool json) {
    if (json)
        writeJson(context.out, jsonOf(findings));
    else
        for (const Problem& problem : findings.kept()) context.out << problem.text() << '\n';
    const std::size_t count = findings.count();
    context.err << "tallowmere: "
                << (count == 0   ? std::string("no problem found")
                    : count == 1 ? std::string("1 problem found")
                                 : std::to_string(count) + " problems found")
                << '\n';
    return count == 0 ? exit_code::kDone : kProblems;
}

} // namespace

int runCheck(const CommandContext& context, const std::string& target, bool json) {
    Findings findings;
    if (target.empty()) {
        checkEverything(context, findings);
        return summarise(context, findings, json);
    }
    const FoundItem item = findItem(target);
    if (item.id) {
        checkItem(context.platform, *item.id, findings);
        return summarise(context, findings, json);
    }
    const auto path = wideFileName(target);
    if (!path || !context.platform.exists(*path)) {
        context.err << "tallowmere: there is neither a calibration item nor a file "
                    << tools::inQuotes(std::string_view(target)) << "; " << item.error << '\n';
        return exit_code::kUsage;
    }
    checkFile(context.platform, *path, findings);
    return summarise(context, findings, json);
}

} // namespace tallowmere::tools
