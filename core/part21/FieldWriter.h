#pragma once

#include "part21/RecordWriter.h"

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcFacts.h>

#include <cstdint>

namespace KP_SDAI {

/// Writes the fields that files consist of mostly: references, lists and sets of them, lists of numbers.
class RecordWriter::FieldWriter {
public:
    explicit FieldWriter(KpSpfFilerBase& filer) : m_filer(filer) {}

    void writeReference(const KpDbObjectId& reference, bool separator) const {
        m_filer.separate(separator);
        put(reference);
    }
    void writeBinary(const KpAnsiString& value, bool separator) const {
        m_filer.separate(separator);
        m_filer.wrBinary(value);
    }
    /// False, and nothing written, where the elements are others.
    bool writeAggregate(const KpIfcAggrFacts& facts, const KpIfcAggr& aggregate, bool optional, bool separator) const {
        if (facts.element == KpIfcElementKind::reference)
            write<KpDbObjectId>(aggregate, optional, separator);
        else if (facts.element == KpIfcElementKind::real)
            write<double>(aggregate, optional, separator);
        else
            return false;
        return true;
    }

private:
    template <class T>
    void write(const KpIfcAggr& aggregate, bool optional, bool separator) const {
        m_filer.separate(separator);
        if (optional && aggregate.empty()) return m_filer.put('$');
        m_filer.put('(');
        bool next = false;
        for (const T& element : static_cast<const KpIfcAggrElements<T>&>(*aggregate.implementation())) {
            m_filer.separate(next);
            put(element);
            next = true;
        }
        m_filer.put(')');
    }
    void put(const KpDbObjectId& reference) const {
        if (reference.isNull()) return m_filer.put('$');
        m_filer.putName(reference.instanceName());
    }
    void put(double value) const { m_filer.putReal(value); }

    KpSpfFilerBase& m_filer;
};

} // namespace KP_SDAI
