#include "Harness.h"
#include "Models.h"

using namespace KP_SDAI;

namespace {

std::string file(std::string_view header) {
    return "ISO-10303-21;\nHEADER;\nFILE_SCHEMA(('IFC2X3'));\n" + std::string(header) +
           "\nENDSEC;\nDATA;\nENDSEC;\nEND-ISO-10303-21;\n";
}

/// The records of a header as they are understood.
std::string understood(const KpIfcHeader& header) {
    std::string text;
    for (const KpIfcHeaderRecord& record : header.records()) {
        text += record.keyword + ": " + KpStepValue::list(record.parameters).spelled() + '\n';
    }
    return text;
}

} // namespace

/// Header records. Besides what holds for every file, texts that are set come back.
void fuzzTarget(std::string_view bytes) {
    const std::string content = file(bytes);
    requireRoundTrip(content);

    KpIfcFile opened;
    if (opened.openMemory(content.data(), content.size()) != KP::eOk) {
        return;
    }
    const std::vector<std::string> texts = opened.header().description();
    opened.header().setTexts("FILE_NAME", 2, texts);
    opened.header().setText("FILE_NAME", 5, "it's \\ \n");
    const std::string expected = understood(opened.header());
    for (const bool normalised : {false, true}) {
        KpIfcFile again = reopened(written(opened, normalised));
        requireSame(understood(again.header()), expected, "a header that was changed reads as it was written");
    }
}
