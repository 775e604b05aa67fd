#include <KpIfcCore/KpStepText.h>
#include <KpIfcCore/TextEncodeDecode.h>
#include <KpRx/KcString.h>

#include <string>

namespace KP_SDAI {

TextEncodeDecode::TextEncodeDecode() = default;
TextEncodeDecode::~TextEncodeDecode() = default;

void TextEncodeDecode::encodeText(const KcString& text, KpAnsiString& encoded, CodecType codec) const {
    std::string step;
    if (codec == kCodecStep) KpStepText::encode(text.view(), step);
    encoded = KpAnsiString(codec == kCodecStep ? std::string_view(step) : text.view());
}

void TextEncodeDecode::decodeText(const KpAnsiString& encoded, KcString& text, CodecType codec) const {
    text.assign(codec == kCodecStep ? KpStepText::decode(encoded.view()).c_str() : encoded.constStr());
}

} // namespace KP_SDAI
