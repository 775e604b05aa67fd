#pragma once

#include <KpIfcCore/KpIfcFacts.h>

#include <string>

/// What an attribute holds, as a text that is equal for equal values of instances in different models. It is made from
/// the members alone, without the code that writes files.
std::string attributeText(KP_SDAI::KpIfcEntityBase& instance, const KP_SDAI::KpIfcAttributeFacts& attribute);
/// The same of a select.
std::string selectText(const KP_SDAI::KpIfcSelect& select);
/// All attributes of an instance, a line each.
std::string attributesText(KP_SDAI::KpIfcEntityBase& instance);
