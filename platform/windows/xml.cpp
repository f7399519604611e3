#include "platform/windows/regular_file.hpp"
#include "platform/windows/windows_platform.hpp"

#include <objidl.h>
#include <shlwapi.h>
#include <xmllite.h>

#include <utility>

namespace tallowmere::platform {
namespace {

constexpr int kDeepestLevel = 256; // the root element is level 1

class ElementReader final : public XmlReader {
  public:
    ElementReader(UniqueCom<IStream> stream, UniqueCom<IXmlReader> nodes) noexcept
        : stream_(std::move(stream)), nodes_(std::move(nodes)) {}

    [[nodiscard]] bool next(XmlElement& element) override {
        XmlNodeType type = XmlNodeType_None;
        while (!ended_) {
            const HRESULT read = nodes_->Read(&type);
            malformed_ = FAILED(read);
            ended_ = read != S_OK;
            if (ended_) break;
            if (type == XmlNodeType_EndElement) --level_;
            if (type == XmlNodeType_Element) return enter(element);
        }
        return false;
    }

    [[nodiscard]] std::size_t line() const noexcept override {
        UINT line = 0;
        return FAILED(nodes_->GetLineNumber(&line)) ? 0 : line;
    }
    [[nodiscard]] bool malformed() const noexcept override { return malformed_; }

  private:
    bool enter(XmlElement& element) {
        const bool hasEndTag = nodes_->IsEmptyElement() == FALSE; // asked before the attributes are visited
        ended_ = level_ == kDeepestLevel || !readName(element.name);
        malformed_ = ended_;
        if (ended_) return false;
        if (hasEndTag) ++level_;
        readAttributes(element.attributes);
        return true;
    }

    void readAttributes(std::vector<XmlAttribute>& attributes) {
        attributes.clear();
        for (HRESULT found = nodes_->MoveToFirstAttribute(); found == S_OK; found = nodes_->MoveToNextAttribute()) {
            XmlAttribute attribute;
            if (nodes_->IsDefault() == FALSE && readName(attribute.name) && readValue(attribute.value))
                attributes.push_back(std::move(attribute));
        }
        nodes_->MoveToElement();
    }

    bool readName(std::u16string& name) {
        const WCHAR* text = nullptr;
        UINT length = 0;
        if (FAILED(nodes_->GetLocalName(&text, &length)) || text == nullptr) return false;
        name.assign(text, text + length);
        return true;
    }

    bool readValue(std::u16string& value) {
        const WCHAR* text = nullptr;
        UINT length = 0;
        if (FAILED(nodes_->GetValue(&text, &length)) || text == nullptr) return false;
        value.assign(text, text + length);
        return true;
    }

    UniqueCom<IStream> stream_;
    UniqueCom<IXmlReader> nodes_; // released before its stream
    int level_ = 0;               // elements whose end tag is still to come
    bool ended_ = false;
    bool malformed_ = false;
};

/// Asked of the stream itself, which keeps writers away: before it was opened the file may have grown or been replaced.
bool isLargerThanAllowed(IStream* stream) noexcept {
    STATSTG status{};
    return FAILED(stream->Stat(&status, STATFLAG_NONAME)) ||
           status.cbSize.QuadPart > static_cast<ULONGLONG>(kLargestDocument);
}

/// Looks first: the stream would take a device for a file.
UniqueCom<IStream> openStream(const std::u16string& path) {
    UniqueCom<IStream> stream;
    if (!openRegularFile(path, 0)) return stream;
    if (FAILED(::SHCreateStreamOnFileEx(wide(path), STGM_READ | STGM_SHARE_DENY_WRITE, 0, FALSE, nullptr,
                                        stream.receive())) ||
        isLargerThanAllowed(stream.get()))
        return {};
    return stream;
}

UniqueCom<IXmlReader> makeReader(IStream* stream) {
    UniqueCom<IXmlReader> reader;
    void* made = nullptr;
    if (FAILED(::CreateXmlReader(__uuidof(IXmlReader), &made, nullptr))) return reader;
    reader.reset(static_cast<IXmlReader*>(made));
    // The reader's own limit of levels is lifted, where it has one: they are counted here.
    reader->SetProperty(XmlReaderProperty_MaxElementDepth, 0);
    if (FAILED(reader->SetProperty(XmlReaderProperty_DtdProcessing, DtdProcessing_Prohibit)) ||
        FAILED(reader->SetInput(stream)))
        return {};
    return reader;
}

} // namespace

std::unique_ptr<XmlReader> WindowsPlatform::openXml(const std::u16string& path) const {
    UniqueCom<IStream> stream = openStream(path);
    if (!stream) return nullptr;
    UniqueCom<IXmlReader> reader = makeReader(stream.get());
    if (!reader) return nullptr;
    return std::make_unique<ElementReader>(std::move(stream), std::move(reader));
}

} // namespace tallowmere::platform
