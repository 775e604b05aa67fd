#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcSettings.h>
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
    text.assign(codec == kCodecStep ? std::string_view(KpStepText::decode(encoded.view())) : encoded.view());
}

CodecType codecOf(const KpIfcEntityBase& instance) {
    const KpIfcModel* model = instance.owningModel();
    const bool isUtf8 = model ? model->textIsUtf8() : settings().get_useUTF8();
    return isUtf8 ? kCodecUtf8 : kCodecStep;
}

} // namespace KP_SDAI
