// A recording on disk.
#include "tools/feed/source.hpp"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace tallowmere::feed {
namespace {

namespace fs = std::filesystem;

class FileSource final : public Source {
  public:
    explicit FileSource(std::ifstream stream) : stream_(std::move(stream)) {}

    State read(std::string& bytes, std::chrono::milliseconds) override {
        constexpr std::size_t kPiece = 65'536;
        const std::size_t before = bytes.size();
        bytes.resize(before + kPiece);
        stream_.read(bytes.data() + before, static_cast<std::streamsize>(kPiece));
        bytes.resize(before + static_cast<std::size_t>(stream_.gcount()));
        if (bytes.size() > before) return State::Data;
        if (!stream_.bad()) return State::End;
        error_ = "reading the file failed; the rest of it is missing";
        return State::Failed;
    }

    [[nodiscard]] bool isRecording() const noexcept override { return true; }

  private:
    std::ifstream stream_;
};

fs::path pathOf(const std::string& utf8) {
    return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

} // namespace

OpenedSource openFile(const std::string& path) {
    const fs::path file = pathOf(path);
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::not_found)
        return {nullptr, "cannot read " + path +
                             ": there is no such file. Check the name, or use \"-\" for standard "
                             "input, udp:PORT or tcp:HOST:PORT"};
    if (status.type() == fs::file_type::directory)
        return {nullptr, "cannot read " + path + ": it is a folder. Name a recording in it"};
    if (status.type() != fs::file_type::regular && status.type() != fs::file_type::unknown &&
        status.type() != fs::file_type::none)
        return {nullptr, "cannot read " + path +
                             ": it is no ordinary file. Send its bytes to standard input and name "
                             "the source \"-\""};
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        const char* const reason = errno != 0 ? std::strerror(errno) : "it can't be opened";
        return {nullptr, "cannot read " + path + ": " + reason};
    }
    return {std::make_unique<FileSource>(std::move(stream)), {}};
}

} // namespace tallowmere::feed
