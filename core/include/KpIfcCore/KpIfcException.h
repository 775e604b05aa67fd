#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>

#include <exception>

namespace KP_SDAI {

/// The one exception that instances and aggregates throw.
///
/// Codes: 180 "SDAI-model access not read-write", 190 "SDAI-model access not defined" (`where` is the qualified name
/// of the operation), 470 "Index invalid " (no `where`), 1000 "Underlying system error" (`where` says which: a record
/// of a lazily opened file cannot be read). `message` is not copied: it is a literal. `where` is copied. Copies without
/// allocation.
class KPIFCCORE_EXPORT KpIfcException : public std::exception {
public:
    KpIfcException(unsigned code, const char* message, const char* where);
    KpIfcException(const KpIfcException&) = default;
    ~KpIfcException() override;

    unsigned code() const { return m_code; }
    const char* message() const { return m_message; }
    const char* where() const { return m_where; }
    const char* what() const noexcept override { return m_message; }

private:
    unsigned m_code;
    const char* m_message;
    char m_where[120];
};

} // namespace KP_SDAI
