#pragma once

#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpIfcCoreApi.h>

class KcString;

namespace KP_SDAI {

class KpIfcEntityBase;

/// How narrow texts stand for Unicode.
enum CodecType : int {
    kCodecUtf8 = 0, ///< as UTF-8
    kCodecStep = 1  ///< as STEP files encode them (ISO 10303-21, clause 6.4.3)
};

/// Converts between texts as models hold them and texts as users see them.
class KPIFCCORE_EXPORT TextEncodeDecode {
public:
    TextEncodeDecode();
    ~TextEncodeDecode();
    void encodeText(const KcString& text, KpAnsiString& encoded, CodecType codec) const;
    void decodeText(const KpAnsiString& encoded, KcString& text, CodecType codec) const;
};

/// How the texts of an instance stand for Unicode: as its model was read; of an instance of no model, as
/// KpIfcSettings::get_useUTF8() says.
KPIFCCORE_EXPORT CodecType codecOf(const KpIfcEntityBase& instance);

} // namespace KP_SDAI
