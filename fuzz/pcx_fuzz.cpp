// libFuzzer target: the PCX decoders and the PNG writer on arbitrary bytes.
#include "formats/pcx.h"
#include "formats/png_writer.h"

#include <cstdlib>

namespace {
class SilentMessages : public vantrel::Messages {
  public:
    vantrel::MsgAnswer Show(const std::string&, const std::string&, vantrel::MsgButtons,
                            vantrel::MsgIcon) override {
        return vantrel::MsgAnswer::OK;
    }
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    SilentMessages messages;
    const vantrel::PcxResult r = vantrel::DecodePCX(bytes, messages);
    if (r.image) {
        const vantrel::PcxImage& img = *r.image;
        // A picture always has the size it claims.
        if (img.width < 1 || img.height < 1 ||
            img.pixels.size() != img.BytesPerRow() * static_cast<std::size_t>(img.height))
            std::abort();
        if (img.width <= 256 && img.height <= 256 && vantrel::EncodePng(img).empty()) std::abort();
    } else if (r.reason.empty()) {
        std::abort(); // every failure has a reason
    }
    // The decoders called directly, whatever the header says.
    (void)vantrel::DecodePCX256(bytes, messages);
    (void)vantrel::DecodePCX24(bytes);
    return 0;
}
