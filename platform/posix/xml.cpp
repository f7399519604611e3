#include "platform/posix/xml.hpp"

#include "platform/posix/files.hpp"
#include "platform/posix/text.hpp"

#include <expat.h>
#include <new>
#include <sys/stat.h>
#include <utility>

namespace tallowmere::platform::posix {
namespace {

constexpr int kDeepestLevel = 256;
// The parser looks at an unfinished tag again with every piece of the file that it gets. So pieces grow while
// a tag goes on, which keeps that work in proportion, up to a limit that no honest document comes near.
constexpr int kPieceBytes = 16 << 10;
constexpr int kLargestPieceBytes = 8 << 20;

struct ParserDeleter {
    void operator()(XML_Parser parser) const noexcept { ::XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<XML_ParserStruct, ParserDeleter>;

/// Prefixes are of no interest here.
std::string_view localName(std::string_view name) noexcept {
    return name.substr(name.rfind(':') + 1);
}

std::size_t countNamesAndValues(const XML_Char* const* attributes) noexcept {
    std::size_t count = 0;
    while (attributes[count] != nullptr) ++count;
    return count;
}

/// Reads the file piece by piece; the parser pauses at each start tag until the next element is asked for.
class ExpatReader final : public XmlReader {
  public:
    ExpatReader(Descriptor file, Parser parser) : file_(std::move(file)), parser_(std::move(parser)) {
        ::XML_SetUserData(parser_.get(), this);
        ::XML_SetElementHandler(parser_.get(), onStart, onEnd);
        ::XML_SetStartDoctypeDeclHandler(parser_.get(), onDoctype);
    }

    [[nodiscard]] bool next(XmlElement& element) override {
        while (!ended_) {
            const XML_Status status = paused_ ? resume() : parsePiece();
            if (outOfMemory_) throw std::bad_alloc();
            paused_ = status == XML_STATUS_SUSPENDED;
            malformed_ = status == XML_STATUS_ERROR;
            ended_ = malformed_ || (status == XML_STATUS_OK && lastPiece_);
            if (!paused_) continue;
            std::swap(element, element_); // what it holds is room for the next one
            return true;
        }
        return false;
    }

    [[nodiscard]] std::size_t line() const noexcept override {
        return ended_ ? ::XML_GetCurrentLineNumber(parser_.get()) : line_;
    }
    [[nodiscard]] bool malformed() const noexcept override { return malformed_; }

  private:
    XML_Status resume() noexcept { return ::XML_ResumeParser(parser_.get()); }

    XML_Status parsePiece() noexcept {
        growPiece();
        if (pieceBytes_ > kLargestPieceBytes) return XML_STATUS_ERROR;
        void* piece = ::XML_GetBuffer(parser_.get(), pieceBytes_);
        if (piece == nullptr) return XML_STATUS_ERROR;
        const auto room = static_cast<std::size_t>(pieceBytes_);
        const std::size_t count = readWhole(file_.get(), {static_cast<char*>(piece), room});
        lastPiece_ = count < room;
        bytes_ += static_cast<std::int64_t>(count);
        if (bytes_ > kLargestDocument) return XML_STATUS_ERROR; // has grown since it was opened
        return ::XML_ParseBuffer(parser_.get(), static_cast<int>(count), lastPiece_ ? XML_TRUE : XML_FALSE);
    }

    void growPiece() noexcept {
        const XML_Index position = ::XML_GetCurrentByteIndex(parser_.get());
        pieceBytes_ = position == position_ ? pieceBytes_ * 2 : kPieceBytes;
        position_ = position;
    }

    /// Exceptions must not pass through the parser.
    void start(const XML_Char* name, const XML_Char** attributes) noexcept {
        if (++level_ > kDeepestLevel) return stop();
        line_ = ::XML_GetCurrentLineNumber(parser_.get()); // once paused the parser stands behind the tag
        try {
            widenText(localName(name), element_.name);
            element_.attributes.resize(countNamesAndValues(attributes) / 2);
            for (XmlAttribute& attribute : element_.attributes) {
                widenText(localName(*attributes++), attribute.name);
                widenText(*attributes++, attribute.value);
            }
            ::XML_StopParser(parser_.get(), XML_TRUE);
        } catch (const std::bad_alloc&) {
            outOfMemory_ = true;
            stop();
        }
    }
    void stop() noexcept { ::XML_StopParser(parser_.get(), XML_FALSE); }

    static ExpatReader& self(void* data) noexcept { return *static_cast<ExpatReader*>(data); }
    static void XMLCALL onStart(void* data, const XML_Char* name, const XML_Char** attributes) noexcept {
        self(data).start(name, attributes);
    }
    static void XMLCALL onEnd(void* data, const XML_Char*) noexcept { --self(data).level_; }
    static void XMLCALL onDoctype(void* data, const XML_Char*, const XML_Char*, const XML_Char*, int) noexcept {
        self(data).stop();
    }

    Descriptor file_;
    Parser parser_;
    XmlElement element_;
    std::size_t line_ = 0;
    std::int64_t bytes_ = 0; // read so far
    XML_Index position_ = 0;
    int pieceBytes_ = kPieceBytes;
    int level_ = 0;
    bool paused_ = false;
    bool lastPiece_ = false;
    bool ended_ = false;
    bool malformed_ = false;
    bool outOfMemory_ = false;
};

} // namespace

std::unique_ptr<XmlReader> openXmlReader(const std::u16string& path) {
    Descriptor file = openRegularFile(path);
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || status.st_size > kLargestDocument) return nullptr;
    Parser parser(::XML_ParserCreate(nullptr));
    if (parser == nullptr) return nullptr;
    return std::make_unique<ExpatReader>(std::move(file), std::move(parser));
}

} // namespace tallowmere::platform::posix
