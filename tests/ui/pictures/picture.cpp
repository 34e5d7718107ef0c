#include "ovufc/noncopyable.h"
#include "tests/ui/pictures/picture.h"

#include <windows.h>
#include <wincodec.h>
#include <wrl/client.h>

#include <cstdint>
#include <set>
#include <vector>

namespace ov::test {

namespace {

using Microsoft::WRL::ComPtr;

constexpr std::uint32_t colour_bits = 0x00FFFFFF;
constexpr unsigned bytes_per_pixel = 4;

class com_scope : private noncopyable {
  public:
    com_scope() noexcept : entered_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~com_scope() {
        if (entered_) {
            CoUninitialize();
        }
    }

  private:
    bool entered_;
};

/// The first frame with 32 bits a pixel; null when there is none.
ComPtr<IWICBitmapSource> decode(const std::wstring& path) {
    ComPtr<IWICImagingFactory> factory;
    ComPtr<IWICBitmapDecoder> decoder;
    ComPtr<IWICBitmapFrameDecode> frame;
    ComPtr<IWICFormatConverter> converted;
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                IID_PPV_ARGS(factory.GetAddressOf()))) ||
        FAILED(factory->CreateDecoderFromFilename(path.c_str(), nullptr, GENERIC_READ,
                                                  WICDecodeMetadataCacheOnLoad, decoder.GetAddressOf())) ||
        FAILED(decoder->GetFrame(0, frame.GetAddressOf())) ||
        FAILED(factory->CreateFormatConverter(converted.GetAddressOf())) ||
        FAILED(converted->Initialize(frame.Get(), GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone,
                                     nullptr, 0, WICBitmapPaletteTypeCustom))) {
        return nullptr;
    }
    return converted;
}

}  // namespace

std::optional<picture_facts> read_picture(const std::wstring& path) {
    const com_scope com;
    const ComPtr<IWICBitmapSource> source = decode(path);
    picture_facts facts;
    if (source == nullptr || FAILED(source->GetSize(&facts.width, &facts.height))) {
        return std::nullopt;
    }
    std::vector<std::uint32_t> pixels(std::size_t{facts.width} * facts.height);
    if (FAILED(source->CopyPixels(nullptr, facts.width * bytes_per_pixel,
                                  static_cast<UINT>(pixels.size() * bytes_per_pixel),
                                  reinterpret_cast<BYTE*>(pixels.data())))) {
        return std::nullopt;
    }
    std::set<std::uint32_t> colours;
    for (const std::uint32_t pixel : pixels) {
        colours.insert(pixel & colour_bits);
        facts.lit_pixels += (pixel & colour_bits) != 0 ? 1 : 0;
    }
    facts.colours = colours.size();
    return facts;
}

}  // namespace ov::test
