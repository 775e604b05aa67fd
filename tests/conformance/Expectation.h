#pragma once

#include <KpIfcCore/KpIfcFile.h>

#include <filesystem>
#include <string>
#include <vector>

/// What reading a file is expected to give: the lines of the .expect file beside it.
///
///     # any text                                     a comment: why it is so
///     texts encoded                                  read with texts left as the file has them
///     status clean|findings|error                    findings: anything worse than notes
///     refused TEXT                                   where the file cannot be opened: TEXT is part of the reason
///     instances N                                    instances of the model
///     kept N                                         records that are kept as text
///     SEVERITY KIND LINE:COLUMN [#NAME] [ATTRIBUTE]  a finding; all of them are listed, in order
struct Expectation {
    std::string comments; ///< whole lines
    bool textsEncoded = false;
    std::string error;              ///< the expected part of it; empty where the file can be opened
    std::vector<std::string> lines; ///< the others: status, counts and findings

    static Expectation read(const std::filesystem::path& path);
    /// The same lines for a file that was read.
    static std::vector<std::string> linesOf(const KP_SDAI::KpIfcFile& file, bool isOpen);
};
