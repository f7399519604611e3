#include "tests/process/windows/screenshot.hpp"

#include <algorithm>
#include <array>
#include <fstream>

namespace tallowmere::test {
namespace {

BITMAPINFOHEADER describe(int width, int height) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = -height; // the top row first
    header.biPlanes = 1;
    header.biBitCount = 32;
    header.biCompression = BI_RGB;
    return header;
}

bool isRed(std::uint32_t pixel) {
    const std::uint32_t red = pixel >> 16 & 0xFF;
    const std::uint32_t green = pixel >> 8 & 0xFF;
    const std::uint32_t blue = pixel & 0xFF;
    return red >= 128 && green < red / 2 && blue < red / 2;
}

} // namespace

Screenshot::Screenshot()
    : width_(::GetSystemMetrics(SM_CXSCREEN)), height_(::GetSystemMetrics(SM_CYSCREEN)),
      pixels_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_)) {
    const HDC screen = ::GetDC(nullptr);
    const HDC memory = ::CreateCompatibleDC(screen);
    const HBITMAP bitmap = ::CreateCompatibleBitmap(screen, width_, height_);
    const HGDIOBJ before = ::SelectObject(memory, bitmap);
    ::BitBlt(memory, 0, 0, width_, height_, screen, 0, 0, SRCCOPY | CAPTUREBLT);
    ::SelectObject(memory, before);
    BITMAPINFO info{};
    info.bmiHeader = describe(width_, height_);
    ::GetDIBits(memory, bitmap, 0, static_cast<UINT>(height_), pixels_.data(), &info, DIB_RGB_COLORS);
    ::DeleteObject(bitmap);
    ::DeleteDC(memory);
    ::ReleaseDC(nullptr, screen);
}

int Screenshot::redPixels(const RECT& part) const {
    int count = 0;
    for (int y = std::max<int>(part.top, 0); y < std::min<int>(part.bottom, height_); ++y)
        for (int x = std::max<int>(part.left, 0); x < std::min<int>(part.right, width_); ++x)
            if (isRed(pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                              static_cast<std::size_t>(x)]))
                ++count;
    return count;
}

bool Screenshot::save(const std::filesystem::path& path) const {
    const BITMAPINFOHEADER info = describe(width_, height_);
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42; // "BM"
    file.bfOffBits = sizeof file + sizeof info;
    file.bfSize = file.bfOffBits + static_cast<DWORD>(pixels_.size() * sizeof pixels_[0]);
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&file), sizeof file);
    out.write(reinterpret_cast<const char*>(&info), sizeof info);
    out.write(reinterpret_cast<const char*>(pixels_.data()),
              static_cast<std::streamsize>(pixels_.size() * sizeof pixels_[0]));
    return out.flush().good();
}

std::filesystem::path artifactFolder() {
    std::array<wchar_t, 1024> folder{};
    const DWORD length =
        ::GetEnvironmentVariableW(L"TALLOWMERE_ARTIFACTS", folder.data(), static_cast<DWORD>(folder.size()));
    return length < folder.size() ? std::filesystem::path(folder.data()) : std::filesystem::path();
}

} // namespace tallowmere::test
