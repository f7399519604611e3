#include "tools/calibration/file_names.hpp"

#include <exception>
#include <filesystem>
#include <fstream>

namespace tallowmere::tools {
namespace {

std::filesystem::path pathOf(std::string_view name) {
    return std::u8string(name.begin(), name.end());
}

} // namespace

std::optional<std::u16string> wideFileName(std::string_view name) {
    try {
        return pathOf(name).u16string();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

bool writeWholeFile(const std::string& name, std::string_view bytes) {
    try {
        std::ofstream file(pathOf(name), std::ios::binary | std::ios::trunc);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        file.close();
        return file.good();
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace tallowmere::tools
