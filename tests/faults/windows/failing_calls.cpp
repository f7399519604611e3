#include "tests/faults/windows/failing_calls.hpp"

#define CINTERFACE // objects as tables of functions
#include <windows.h>

#include <aclapi.h>
#include <objidl.h>
#include <shlobj.h>
#include <shlwapi.h>
#include <winternl.h>
#include <xmllite.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace tallowmere::test {
namespace {

constexpr auto kAccessDenied = static_cast<NTSTATUS>(0xC0000022);

thread_local bool counting = false;
bool shortened = false;
std::size_t made = 0;
std::size_t failing = 0;
DWORD failure = 0;
const char* failed = "";
std::vector<std::u16string> boxes;

struct Call {
    std::string_view name;
    bool hasFailed = false;
};
std::vector<Call>& calls() {
    static std::vector<Call> all;
    return all;
}

/// Counts a call; true when it is the one that fails.
bool fails(const char* name) noexcept {
    if (!counting || ++made != failing) return false;
    failed = name;
    for (Call& call : calls()) call.hasFailed |= call.name == name;
    ::SetLastError(failure);
    return true;
}

template <class T> T* at(std::size_t offset) noexcept {
    return reinterpret_cast<T*>(reinterpret_cast<std::byte*>(::GetModuleHandleW(nullptr)) + offset);
}

/// The entry of this program's import address table for a function.
ULONGLONG* importOf(std::string_view function) {
    const auto* const headers = at<IMAGE_NT_HEADERS64>(static_cast<std::size_t>(at<IMAGE_DOS_HEADER>(0)->e_lfanew));
    const auto imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (const auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(imports); library->Name != 0; ++library) {
        const auto* name = at<IMAGE_THUNK_DATA64>(library->OriginalFirstThunk);
        auto* entry = at<IMAGE_THUNK_DATA64>(library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++entry)
            if (!IMAGE_SNAP_BY_ORDINAL64(name->u1.Ordinal) &&
                function == at<IMAGE_IMPORT_BY_NAME>(name->u1.AddressOfData)->Name)
                return &entry->u1.Function;
    }
    throw std::runtime_error("not imported");
}

/// Lets calls through an entry of a table lead elsewhere; where they led before.
template <class Function> Function* redirect(const char* name, void* entry, Function* replacement) {
    calls().push_back({name});
    Function* original = nullptr;
    static_assert(sizeof original == sizeof(void*));
    DWORD access = 0;
    if (!::VirtualProtect(entry, sizeof original, PAGE_READWRITE, &access)) throw std::runtime_error("VirtualProtect");
    std::memcpy(&original, entry, sizeof original);
    std::memcpy(entry, &replacement, sizeof replacement);
    ::VirtualProtect(entry, sizeof original, access, &access);
    return original;
}

/// One function or method, whose replacement counts its calls.
template <class Row, class Function> class Counted;
template <class Row, class Result, class... Arguments> class Counted<Row, Result(Arguments...)> {
  public:
    Counted() { original_ = redirect(Row::kName, Row::entry(), &call); }

  private:
    static Result call(Arguments... arguments) {
        return fails(Row::kName) ? static_cast<Result>(Row::failing()) : original_(arguments...);
    }
    static inline Result (*original_)(Arguments...) = nullptr;
};

// The table of methods that all objects of a kind share, taken from one of them.
IStreamVtbl* streamMethods() {
    std::array<wchar_t, MAX_PATH> program{};
    ::GetModuleFileNameW(nullptr, program.data(), MAX_PATH);
    IStream* stream = nullptr;
    if (FAILED(::SHCreateStreamOnFileEx(program.data(), STGM_READ, 0, FALSE, nullptr, &stream)))
        throw std::runtime_error("SHCreateStreamOnFileEx");
    IStreamVtbl* const methods = stream->lpVtbl;
    methods->Release(stream);
    return methods;
}
IXmlReaderVtbl* xmlReaderMethods() {
    constexpr IID kXmlReader = {0x7279fc81, 0x709d, 0x4095, {0xb6, 0x3d, 0x69, 0xfe, 0x4b, 0x0d, 0x90, 0x30}};
    void* object = nullptr;
    if (FAILED(::CreateXmlReader(kXmlReader, &object, nullptr))) throw std::runtime_error("CreateXmlReader");
    auto* const reader = static_cast<IXmlReader*>(object);
    IXmlReaderVtbl* const methods = reader->lpVtbl;
    methods->Release(reader);
    return methods;
}

// Not among them are
// - what gives something back: CloseHandle, CoTaskMemFree, DestroyWindow, LocalFree, RegCloseKey, UnmapViewOfFile and
//   Release, of whose failure there is no way on;
// - what has no failure: GetActiveWindow, GetLastError, GetSystemInfo, GetSystemTimePreciseAsFileTime, PostQuitMessage,
//   SetLastError, Sleep, IXmlReader::IsDefault and IsEmptyElement;
// - what programs at a terminal use only: keyboard.cpp and terminal.cpp.
// clang-format off
#define FUNCTION(name, nothing)                                       \
    struct name##Row {                                                \
        static constexpr const char* kName = #name;                   \
        static void* entry() { return importOf(#name); }              \
        static auto failing() noexcept { return nothing; }            \
    };                                                                \
    const Counted<name##Row, decltype(::name)> counted##name;

// Each gives a failure's code.
#define METHOD(kind, methods, name)                                   \
    struct kind##name##Row {                                          \
        static constexpr const char* kName = #kind "::" #name;        \
        static void* entry() { return &(methods)->name; }             \
        static auto failing() { return HRESULT_FROM_WIN32(failure); } \
    };                                                                \
    const Counted<kind##name##Row, std::remove_pointer_t<decltype(kind##Vtbl::name)>> counted##kind##name;

// function                           what it gives when it fails; the last error is set in each case
FUNCTION(CreateDirectoryW,            FALSE)
FUNCTION(CreateFileMappingW,          nullptr)
FUNCTION(CreateFileW,                 INVALID_HANDLE_VALUE)
FUNCTION(CreateWindowExW,             nullptr)
FUNCTION(CreateXmlReader,             HRESULT_FROM_WIN32(failure))
FUNCTION(FlushFileBuffers,            FALSE)
FUNCTION(GetCPInfoExW,                FALSE)
FUNCTION(GetFileAttributesW,          INVALID_FILE_ATTRIBUTES)
FUNCTION(GetFileInformationByHandle,  FALSE)
FUNCTION(GetFileType,                 FILE_TYPE_UNKNOWN)
FUNCTION(GetModuleFileNameW,          0)
FUNCTION(GetModuleHandleW,            nullptr)
FUNCTION(GetSecurityInfo,             failure)
FUNCTION(GetTimeZoneInformation,      TIME_ZONE_ID_INVALID)
FUNCTION(IsWindow,                    FALSE)
FUNCTION(LookupAccountSidW,           FALSE)
FUNCTION(MapViewOfFile,               nullptr)
FUNCTION(MultiByteToWideChar,         0)
FUNCTION(OpenFileMappingW,            nullptr)
FUNCTION(PeekMessageW,                FALSE)
FUNCTION(PostMessageW,                FALSE)
FUNCTION(RegCreateKeyExW,             failure)
FUNCTION(RegEnumValueW,               failure)
FUNCTION(RegOpenKeyExW,               failure)
FUNCTION(RegQueryValueExW,            failure)
FUNCTION(RegSetValueExW,              failure)
FUNCTION(SHCreateStreamOnFileEx,      HRESULT_FROM_WIN32(failure))
FUNCTION(SHGetKnownFolderPath,        HRESULT_FROM_WIN32(failure))
FUNCTION(VirtualQuery,                0)
FUNCTION(WideCharToMultiByte,         0)
METHOD(IStream,    streamMethods(),    Read)
METHOD(IStream,    streamMethods(),    Stat)
METHOD(IXmlReader, xmlReaderMethods(), GetLineNumber)
METHOD(IXmlReader, xmlReaderMethods(), GetLocalName)
METHOD(IXmlReader, xmlReaderMethods(), GetValue)
METHOD(IXmlReader, xmlReaderMethods(), MoveToElement)
METHOD(IXmlReader, xmlReaderMethods(), MoveToFirstAttribute)
METHOD(IXmlReader, xmlReaderMethods(), MoveToNextAttribute)
METHOD(IXmlReader, xmlReaderMethods(), Read)
METHOD(IXmlReader, xmlReaderMethods(), SetInput)
METHOD(IXmlReader, xmlReaderMethods(), SetProperty)
// clang-format on

// Those whose replacements do more.

#define REPLACED(name) const auto original##name = redirect(#name, importOf(#name), &replaced##name)

DWORD shortOf(DWORD size) noexcept {
    return shortened ? std::min<DWORD>(size, 1) : size;
}
BOOL WINAPI replacedReadFile(HANDLE file, void* bytes, DWORD size, DWORD* got, OVERLAPPED* overlapped);
REPLACED(ReadFile);
BOOL WINAPI replacedReadFile(HANDLE file, void* bytes, DWORD size, DWORD* got, OVERLAPPED* overlapped) {
    return !fails("ReadFile") && originalReadFile(file, bytes, shortOf(size), got, overlapped);
}
BOOL WINAPI replacedWriteFile(HANDLE file, const void* bytes, DWORD size, DWORD* written, OVERLAPPED* overlapped);
REPLACED(WriteFile);
BOOL WINAPI replacedWriteFile(HANDLE file, const void* bytes, DWORD size, DWORD* written, OVERLAPPED* overlapped) {
    return !fails("WriteFile") && originalWriteFile(file, bytes, shortOf(size), written, overlapped);
}

/// Nobody is there to answer a box.
int WINAPI replacedMessageBoxW(HWND, const wchar_t* text, const wchar_t*, UINT) {
    boxes.emplace_back(reinterpret_cast<const char16_t*>(text));
    return fails("MessageBoxW") ? 0 : IDOK;
}
[[maybe_unused]] REPLACED(MessageBoxW);

/// The one function that is asked for by name.
FARPROC namedFunction = ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "NtQueryObject");
NTSTATUS NTAPI queryObject(HANDLE object, OBJECT_INFORMATION_CLASS kind, void* bytes, ULONG size, ULONG* got);
const auto originalQueryObject = redirect("NtQueryObject", &namedFunction, &queryObject);
NTSTATUS NTAPI queryObject(HANDLE object, OBJECT_INFORMATION_CLASS kind, void* bytes, ULONG size, ULONG* got) {
    return fails("NtQueryObject") ? kAccessDenied : originalQueryObject(object, kind, bytes, size, got);
}
FARPROC WINAPI replacedGetProcAddress(HMODULE library, const char* name);
REPLACED(GetProcAddress);
FARPROC WINAPI replacedGetProcAddress(HMODULE library, const char* name) {
    if (fails("GetProcAddress")) return nullptr;
    return std::string_view(name) == "NtQueryObject" ? namedFunction : originalGetProcAddress(library, name);
}

} // namespace

void failCall(std::size_t nth, unsigned long error) noexcept {
    made = 0;
    failing = nth;
    failure = error;
    failed = "";
    counting = true;
}
void shortenTransfers() noexcept {
    shortened = true;
}
std::size_t endFailing() noexcept {
    counting = false;
    shortened = false;
    return made;
}
const char* failedCall() noexcept {
    return failed;
}
std::vector<std::string> callsThatNeverFailed() {
    std::vector<std::string> names;
    for (const Call& call : calls())
        if (!call.hasFailed) names.emplace_back(call.name);
    return names;
}
std::vector<std::u16string> boxesShown() {
    return std::exchange(boxes, {});
}

} // namespace tallowmere::test
