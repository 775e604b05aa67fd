#pragma once

#include <KpIfcCore/KpIfcFile.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// A file with whatever makes reading and writing take another way: header, records kept as text and such with fields
/// that are, two records of one name, references to what comes later and to nothing, scattered names, inverse
/// attributes. `more` are further records, of names from 100 on.
std::string richFile(std::string_view more = {});

struct Edit {
    const char* name;
    std::function<void(KP_SDAI::KpIfcModel&)> make;
    bool isGroup = false; ///< has a change group of its own
};

/// Changes of every family, each of which gives the same whenever it is made on what the ones before it left.
const std::vector<Edit>& edits();

/// What a model says about who refers to whom, as a text.
std::string referrersText(const KP_SDAI::KpIfcModel& model);
