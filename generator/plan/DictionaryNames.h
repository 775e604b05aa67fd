#pragma once

#include "facts/Schema.h"

#include <string>

/// The names by which objects of the dictionary are known and refer to one another: three letter cases, by kind.
namespace kpifcgen::plan {

/// Of a simple type: lower case, without width, numbers as reals.
std::string dictionaryName(const facts::SimpleType& type);

/// The type of an attribute: a declared type in upper case, a simple type, or the text of an aggregation of one.
std::string attributeTypeName(const facts::TypeRef& type);

/// What an aggregation is made of: a declared type as it is spelled, or a simple type.
std::string elementTypeName(const facts::TypeRef& type);

/// The text of an aggregation; UNIQUE is not part of it.
std::string aggregationName(const facts::Aggregation& type);

/// The member of a select.
std::string memberTypeName(const facts::TypeRef& type);

/// Of a derived attribute, which says whether it redeclares one.
std::string derivedAttributeName(const facts::DerivedAttribute& attribute);

} // namespace kpifcgen::plan
