#pragma once

#include <KpIfcCore/KpIfcHeader.h>
#include <KpIfcCore/KpIfcReport.h>

#include "model/ModelData.h"
#include "part21/FileFrame.h"
#include "part21/Findings.h"
#include "part21/PartSource.h"
#include "part21/ProgressMeter.h"
#include "part21/Sections.h"
#include "part21/Threading.h"
#include "part21/Window.h"

#include <cstdint>
#include <string>
#include <vector>

namespace KP_SDAI {

/// Reads the frame of a STEP file: its marks, header and sections.
class FileReader {
public:
    /// What it takes to write the source again goes to `layout`.
    FileReader(ByteSource& source, KpIfcHeader& header, FileFrame& frame, SourceLayout& layout, KpIfcReport& report,
               const Threading& threading)
        : m_source(source), m_threading(threading), m_parts(source, threading.partSize), m_layout(layout),
          m_window(m_parts, layout), m_header(header), m_frame(frame), m_report(report) {}

    /// Reads up to the end of the header section. False, with error(), where the bytes are no STEP file or name no
    /// schema.
    bool readHeader(std::string& schema);
    /// Reads all that follows; returns the number of bytes read. What is done after reading is told as further stages.
    /// Throws ReadAgain where one thread alone has to read all of the source anew.
    std::uint64_t readData(ModelData& data, ProgressMeter& progress);

    const std::string& error() const { return m_error; }

private:
    /// Moves to the next statement and finds its end, behind its semicolon; false at the end of the source.
    bool nextStatement(const char*& end);
    bool skipBlanks();
    bool readHeaderRecord(const char* end);
    void readOtherSection(const char* end);
    void reportTexts(const std::string& keyword, unsigned issues);
    /// Reports the keyword of a statement where it is not in upper case.
    void checkCase(const std::string& keyword);
    /// Reports where a statement is more than its keyword.
    void checkAlone(const char* end);
    void readTrailing();
    std::string statement(const char* end) const;
    std::uint64_t offset() const { return m_window.offsetOf(m_place); }
    void report(KpIfcFinding finding, KpIfcSeverity severity, Said said);
    void reportKept(std::string found);
    /// What stands from here to `end`, for a finding.
    std::string quotedHere(const char* end) const;

    ByteSource& m_source;
    const Threading m_threading;
    PartSource m_parts;
    SourceLayout& m_layout;
    Window m_window;
    const char* m_place = nullptr;
    KpIfcHeader& m_header;
    FileFrame& m_frame;
    KpIfcReport& m_report;
    DataSections m_dataSections{KpIfcHeader()}; ///< from the end of the header section on
    std::vector<std::string> m_otherSections;   ///< keywords of those that came so far
    std::string m_error;
};

} // namespace KP_SDAI
