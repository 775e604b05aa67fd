#pragma once

#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpErrorStatus.h>
#include <KpIfcCore/KpIfcBoolean.h>
#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcReport.h>
#include <KpIfcCore/KpIfcSelect.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace KP_SDAI {
class KpArena;
class KpIfcEntityBase;
class KpIfcEntityType;
class LateReferences;
class ModelData;
class PendingField; // part21/PendingField.h
struct ReadingMemory;
class RecordReader;
class RecordWriter;
} // namespace KP_SDAI

class KpSpfReadHelper;

/// Reads and writes the fields of records (ISO 10303-21, clause 12, internal mapping). One object per file that is
/// being read or written; the runtime makes it and hands it to the instances' inFields() and outFields().
///
/// Where two flags follow a value, the first says that the attribute is OPTIONAL and the second that the field is not
/// the first of its record, so that a "," stands before it. Reading never throws and never stops: a value that a member
/// cannot hold leaves the member unset, its text is kept beside the instance, and eInvalidInput is returned. Writing
/// gives "$" for every unset value, whatever its flag.
class KPIFCCORE_EXPORT KpSpfFilerBase {
public:
    KpSpfFilerBase(const KpSpfFilerBase&) = delete;
    KpSpfFilerBase& operator=(const KpSpfFilerBase&) = delete;
    ~KpSpfFilerBase();

    KP::ErrorStatus rdKpAnsiString(KP_SDAI::KpAnsiString& value, bool optional, bool separator);
    KP::ErrorStatus rdLimitedString(char* buffer, int length, bool optional, bool separator);
    KP::ErrorStatus rdDouble(double& value, bool optional, bool separator);
    KP::ErrorStatus rdInt(int& value, bool optional, bool separator);
    KP::ErrorStatus rdPrimitive(KP_SDAI::KpIfcBoolean& value, bool optional, bool separator);
    KP::ErrorStatus rdPrimitive(KP_SDAI::KpIfcLogical& value, bool optional, bool separator);
    KP::ErrorStatus rdReference(KP_SDAI::KpDbObjectId& value, bool separator);
    KP::ErrorStatus rdSelect(KP_SDAI::KpIfcSelect& value, bool optional, bool separator);
    KP_SDAI::KpAnsiString rdEnumerationToStr(bool optional, bool separator);
    KP::ErrorStatus rdDerive(bool separator);

    /// Members of aggregates; the flag: a "," stands before.
    KP::ErrorStatus rdPrimitive(double& value, bool separator);
    KP::ErrorStatus rdPrimitive(int& value, bool separator);
    KP::ErrorStatus rdPrimitive(KP_SDAI::KpAnsiString& value, bool separator);
    KP::ErrorStatus rdPrimitive(KP_SDAI::KpDbObjectId& value, bool separator);
    KP::ErrorStatus rdPrimitive(KP_SDAI::KpIfcSelect& value, bool separator);
    KP::ErrorStatus rdBinary(KP_SDAI::KpAnsiString& value, bool separator);

    void wrKpAnsiString(const KP_SDAI::KpAnsiString& value, bool optional, bool separator);
    void wrLimitedString(const char* text, int length, bool optional, bool separator);
    void wrDouble(const double& value, bool optional, bool separator);
    void wrInt(const int& value, bool optional, bool separator);
    void wrPrimitive(const KP_SDAI::KpIfcBoolean& value, bool optional, bool separator);
    void wrPrimitive(const KP_SDAI::KpIfcLogical& value, bool optional, bool separator);
    void wrReference(const KP_SDAI::KpDbObjectId& value, bool separator);
    void wrSelect(const KP_SDAI::KpIfcSelect& value, bool optional, bool separator);
    /// An empty text is an unset value.
    void wrEnumerationStr(const KP_SDAI::KpAnsiString& literal, bool optional, bool separator);
    void wrDerive(bool separator);

    void wrPrimitive(const double& value);
    void wrPrimitive(const int& value);
    void wrPrimitive(const KP_SDAI::KpAnsiString& value);
    void wrPrimitive(const KP_SDAI::KpDbObjectId& value);
    void wrPrimitive(const KP_SDAI::KpIfcSelect& value);
    void wrBinary(const KP_SDAI::KpAnsiString& value);

    /// Goes behind the next `c` of the parameter list; false, and nothing skipped, where it has none.
    bool skipUntil(char c);
    void wrChar(char c);
    /// Goes on to the next `c` outside comments, and behind it where `past`; never beyond the ',' or ')' that ends the
    /// parameter.
    void ignoreUntilComments(char c, bool past);

    // -- what the shared code of entity classes uses beside the primitives --

    /// The text between the dots of an enumeration field; empty where it is unset or cannot be read.
    std::string_view rdEnumeration(bool optional, bool separator);
    void wrEnumeration(const char* literal, bool separator);
    /// Says that the literal just read is not one of the enumeration's: its text is kept.
    void unknownLiteral();
    /// Reads over a parameter that the instance does not keep, and says so in the report.
    void rdNotKept(bool separator);

    enum class AggregateStart {
        none, ///< nothing to read: "$", "()" or no parameter
        bare, ///< one value without parentheses
        open  ///< members up to ")"
    };
    AggregateStart beginAggregate(bool optional, bool separator);
    /// True, and behind it, where the aggregate's ")" comes next.
    bool atAggregateEnd();
    /// Ends a bare value that counted as an aggregate of one.
    void endBareAggregate();
    /// Says that a set's text repeats members: it is kept.
    void repeatedMembers();
    /// Checks a reference just read against its declared type, or later where its instance comes later in the file.
    void checkReference(const KP_SDAI::KpDbObjectId& reference, const KP_SDAI::KpIfcEntityType* declared);

    /// Where what is read is placed.
    KP_SDAI::KpArena& arena();
    /// Room for the members of one aggregate, emptied by each call.
    template <class T>
    std::vector<T>& members() {
        std::vector<T>& room = scratch(static_cast<T*>(nullptr));
        room.clear();
        return room;
    }

private:
    friend class KpSpfReadHelper;
    friend class KP_SDAI::LateReferences;
    friend class KP_SDAI::RecordReader;
    friend class KP_SDAI::RecordWriter;

    struct FieldIssue; // part21/FieldIssue.h

    /// `memory` is for reading only.
    explicit KpSpfFilerBase(KP_SDAI::ModelData& data, KP_SDAI::ReadingMemory* memory = nullptr);

    bool beginField(bool separator);
    bool beginMember(bool separator);
    bool endField(const char* expected);
    KP::ErrorStatus wrongValue(const char* expected, KP_SDAI::KpIfcFinding finding = KP_SDAI::KpIfcFinding::wrongValue);
    void broken(const char* expected);
    void issue(KP_SDAI::KpIfcFinding finding, KP_SDAI::KpIfcSeverity severity, bool keep, const char* expected);
    void textIssue(KP_SDAI::KpIfcSeverity severity, bool keep, const char* found, const char* expected,
                   const char* done);
    void skipBlanks();
    bool skipParameter();
    bool atUnset();

    bool readReal(double& value);
    bool readInt(int& value);
    bool readReference(KP_SDAI::KpDbObjectId& value);
    bool readText(std::string_view& text);
    bool readBinaryText(std::string_view& text);
    bool readDotted(std::string_view& literal);
    bool readSelect(KP_SDAI::KpIfcSelect& value);
    bool readTyped(KP_SDAI::KpIfcSelect& value);
    bool readTypedValue(KP_SDAI::KpIfcSelect& value, const KP_SDAI::KpAnsiString& name);
    void store(KP_SDAI::KpAnsiString& value, std::string_view text);
    void deferField();
    static bool resolveSelect(KP_SDAI::KpIfcSelect& value) { return value.refreshSelectHandle(); }

    std::vector<double>& scratch(double*) { return m_reals; }
    std::vector<int>& scratch(int*) { return m_integers; }
    std::vector<KP_SDAI::KpAnsiString>& scratch(KP_SDAI::KpAnsiString*) { return m_texts; }
    std::vector<KP_SDAI::KpDbObjectId>& scratch(KP_SDAI::KpDbObjectId*) { return m_references; }

    void put(char c) {
        *room(1) = c;
        ++m_written;
    }
    void put(std::string_view text);
    /// Room for `bytes` more; the caller moves m_written.
    char* room(std::size_t bytes) {
        if (m_buffer.size() - m_written < bytes) makeRoom(bytes);
        return m_buffer.data() + m_written;
    }
    void makeRoom(std::size_t bytes);
    void putText(std::string_view text);
    void putInt(std::int64_t value);
    void putReal(double value);
    void putName(std::uint64_t name);
    void putSelect(const KP_SDAI::KpIfcSelect& value);
    void separate(bool separator) {
        if (separator) put(',');
    }

    KP_SDAI::ModelData& m_data;

    // reading
    KP_SDAI::ReadingMemory* m_memory;
    const char* m_cur = nullptr;
    const char* m_end = nullptr; ///< a zero stands there
    const char* m_fieldStart = nullptr;
    std::uint32_t m_field = 0; ///< number of the current field plus one
    bool m_broken = false;     ///< the record cannot be parsed
    bool m_nested = false;     ///< inside the parentheses of a typed value: a value begins no field
    bool m_missing = false;    ///< the record had fewer parameters than asked for
    bool m_fieldFailed = false;
    bool m_ownsHeap = false; ///< the instance being read holds memory outside the arena
    const char* m_brokenExpected = nullptr;
    KP_SDAI::KpIfcEntityBase* m_instance = nullptr;
    const char* m_recordBegin = nullptr;
    std::uint64_t m_recordOffset = 0; ///< in the source
    std::vector<FieldIssue> m_issues;
    std::vector<KP_SDAI::PendingField>* m_pending = nullptr;
    std::string m_decoded;
    std::vector<const char*> m_sharedTexts; ///< by a hash of their characters; null where there is none
    std::vector<double> m_reals;
    std::vector<int> m_integers;
    std::vector<KP_SDAI::KpAnsiString> m_texts;
    std::vector<KP_SDAI::KpDbObjectId> m_references;

    // writing
    std::vector<char> m_buffer;
    std::size_t m_written = 0;
    bool m_notFinite = false;
    std::string m_encoded;
};

/// Skips parameters that an instance does not keep.
class KPIFCCORE_EXPORT KpSpfReadHelper {
public:
    explicit KpSpfReadHelper(KpSpfFilerBase& filer) : m_filer(filer) {}

    /// Reads over one whole parameter; the flag: a "," stands before it. False where there is none.
    bool ignoreParamter(bool separator);
    /// Goes on to the next `c` while `accept` takes what comes before it; false, and nothing skipped, where it refuses
    /// or the parameter ends with another one.
    bool skipUntilRet(char c, const std::function<bool(char)>& accept);

private:
    KpSpfFilerBase& m_filer;
};
