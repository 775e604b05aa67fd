#pragma once

#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpIfcArray.h>
#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcGUID.h>
#include <KpIfcCore/KpIfcSchema.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string_view>

namespace KP_SDAI {

class KpIfcModule;
class ModelData;

/// How many instances an entity has, those of its subtypes left out.
struct KpIfcEntityCount {
    const KpIfcEntityType* entity = nullptr;
    std::size_t instances = 0;
};

/// A GlobalId that several instances have.
struct KpIfcSharedGlobalId {
    KpIfcGUID globalId;
    KpIfcArray<KpDbObjectId> instances; ///< ascending
};

/// What attribute access by name allows.
enum SdaiAccessMode : int {
    kAccessUndefined = 0, ///< neither reading nor writing
    kReadOnly = 1,
    kReadWrite = 2
};

/// The instances of one file or of one building model. Owns them and whatever they hold.
///
/// Instances have names (the n of #n), by which they are found, and handles, by which they refer to each other.
///
/// **Threads.** Different models have nothing to do with each other. One model is one thread's at a time, but any
/// number of threads may read a model at rest: one that nobody changes and in which nothing is uncommitted
/// (hasUncommitted()), as it is after reading a file and after commit(). Reading are the const operations of the model,
/// of its instances and of what they hold; where the mode is kReadOnly all getters are; and whatever else says of
/// itself that it only reads. A model that was opened lazily is one thread's until it isWhole().
///
/// **Out of memory.** What needs memory throws std::bad_alloc where there is none. create() has made nothing then. What
/// changes several things may have done a part of it. Either way the model is sound: inverse attributes, referrers and
/// indexes follow what did change, and a save writes that. A KpIfcChangeGroup undoes such a part.
class KPIFCCORE_EXPORT KpIfcModel {
public:
    /// An empty model of the module's schema, open for reading and writing.
    explicit KpIfcModel(std::shared_ptr<KpIfcModule> module);
    KpIfcModel(const KpIfcModel&) = delete;
    KpIfcModel& operator=(const KpIfcModel&) = delete;
    ~KpIfcModel();

    SdaiAccessMode mode() const { return m_mode; }
    void mode(SdaiAccessMode mode) { m_mode = mode; }
    const KpIfcSchema& schema() const;
    /// True where texts of this model are UTF-8, false where they stay encoded as in files.
    bool textIsUtf8() const;

    /// A new instance of an entity by its name in any letter case; null where the schema has no such entity or it is
    /// abstract. It gets the name after the highest one that was ever in use, or `instanceName`; null where that one is
    /// taken or was that of an erased instance, and where the highest one is 2^64 - 1.
    KpIfcEntityBase* create(std::string_view entityName, std::uint64_t instanceName = 0);
    KpIfcEntityBase* create(const KpIfcEntityType* type, std::uint64_t instanceName = 0);
    /// The same with a fresh GlobalId; null also for an entity without one, which is any that is no IfcRoot.
    KpIfcEntityBase* createRooted(std::string_view entityName, std::uint64_t instanceName = 0);
    KpIfcEntityBase* createRooted(const KpIfcEntityType* type, std::uint64_t instanceName = 0);
    template <class T>
    T* create() {
        return static_cast<T*>(create(T::g_pEntityType));
    }

    /// The handle of an instance; null where the model has neither an instance nor a kept record of that name.
    KpDbObjectId find(std::uint64_t instanceName) const;

    // By GlobalId. The first of these calls builds an index, which later changes keep true. A model at rest may be
    // asked by many threads at once, the first time too. Instances whose GlobalId is unset or empty have none.

    /// The instance of a GlobalId, of several the one with the lowest name; null where there is none.
    KpDbObjectId findByGlobalId(std::string_view globalId) const;
    /// All instances of a GlobalId, ascending.
    KpIfcArray<KpDbObjectId> findAllByGlobalId(std::string_view globalId) const;
    /// Every GlobalId that several instances have, with those; by their lowest names.
    KpIfcArray<KpIfcSharedGlobalId> sharedGlobalIds() const;

    /// The instances of an entity and its subtypes, ascending, whose explicit attribute holds a value: texts, literals,
    /// numbers and handles by what they are after conversion to the attribute's type, a select by what it holds, an
    /// aggregate by all its elements (given as an array). An empty variant finds those without a value. None where the
    /// schema has no such entity or attribute. Walks over all instances.
    KpIfcArray<KpDbObjectId> findByAttribute(std::string_view entityName, std::string_view attributeName,
                                             const KpIfcVariant& value) const;
    /// Number of instances.
    std::size_t count() const;
    /// The same for each entity that has any, in the order of the names of the entities.
    KpIfcArray<KpIfcEntityCount> entityCounts() const;
    /// Number of records that are kept as text because they could not be bound to a class.
    std::size_t keptRecordCount() const;
    std::uint64_t highestName() const;
    /// The source text, with its semicolon, of a record that is kept as text; empty for instances, erased records and
    /// the null handle. Good while the model lives.
    std::string_view keptRecord(const KpDbObjectId& handle) const;
    /// The handles of all instances as the file has them one after the other, created ones last.
    KpIfcArray<KpDbObjectId> fileOrder() const;

    /// False where records are left that a lazy open has not read yet (KpIfcOpenOptions::lazy).
    bool isWhole() const;
    /// Makes inverse attributes and referrers follow what changed since the last commit; reads what is left to be read.
    /// Reading inverse attributes, asking for referrers and saving do it by themselves; a program need call it only
    /// before it hands a changed or lazily opened model to many threads for reading. From here on, references to
    /// members that were obtained for changing are no longer good for that.
    void commit();
    /// True from a change until the next commit.
    bool hasUncommitted() const;
    /// The instances of this model that refer to an instance through any explicit attribute, be it through an aggregate
    /// or a select; ascending, each once. The first call builds an index over the whole model, which later changes keep
    /// true. A model at rest may be asked by many threads at once, the first time too.
    KpIfcArray<KpDbObjectId> referrers(const KpDbObjectId& handle) const;

    /// Forgets the source text that is kept of a field because its attribute could not hold what the file said, so that
    /// the attribute's value is written even where nothing has changed it since. `field` counts from 0 in the record.
    void forgetSource(const KpIfcEntityBase& instance, std::size_t field);
    void forgetSource(const KpIfcEntityBase& instance, const KpIfcAttributeFacts& attribute);

    /// Walks instances in ascending order of their names, all of them or those of one type.
    class KPIFCCORE_EXPORT Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = KpIfcEntityBase*;
        using difference_type = std::ptrdiff_t;
        using pointer = KpIfcEntityBase* const*;
        using reference = KpIfcEntityBase*;

        Iterator() = default;
        KpIfcEntityBase* operator*() const { return m_current; }
        Iterator& operator++() {
            advance();
            return *this;
        }
        void operator++(int) { advance(); }
        friend bool operator==(const Iterator& a, const Iterator& b) { return a.m_current == b.m_current; }

    private:
        friend class KpIfcModel;
        void advance();
        const ModelData* m_data = nullptr;
        const KpIfcEntityType* m_type = nullptr;
        bool m_withSubtypes = true;
        std::size_t m_stretch = 0;
        std::size_t m_index = 0;
        std::size_t m_sparse = 0;
        KpIfcEntityBase* m_current = nullptr;
    };
    class Range {
    public:
        Iterator begin() const { return m_begin; }
        Iterator end() const { return {}; }

    private:
        friend class KpIfcModel;
        Iterator m_begin;
    };

    /// A walk over instances of class T.
    template <class T>
    class TypedRange {
    public:
        class TypedIterator {
        public:
            using iterator_category = std::input_iterator_tag;
            using value_type = T*;
            using difference_type = std::ptrdiff_t;
            using pointer = T* const*;
            using reference = T*;
            TypedIterator() {}
            explicit TypedIterator(const Iterator& it) : m_it(it) {}
            T* operator*() const { return static_cast<T*>(*m_it); }
            TypedIterator& operator++() {
                ++m_it;
                return *this;
            }
            void operator++(int) { ++m_it; }
            friend bool operator==(const TypedIterator& a, const TypedIterator& b) { return a.m_it == b.m_it; }

        private:
            Iterator m_it;
        };
        explicit TypedRange(Range range) : m_range(range) {}
        TypedIterator begin() const { return TypedIterator(m_range.begin()); }
        TypedIterator end() const { return TypedIterator(); }

    private:
        Range m_range;
    };

    /// All instances.
    Range instances() const { return range(nullptr, true); }
    /// The instances of an entity, with or without those of its subtypes; none where `type` is null.
    Range instances(const KpIfcEntityType* type, bool withSubtypes = true) const;
    Range instances(std::string_view entityName, bool withSubtypes = true) const;
    /// The instances of class T and its subtypes:
    ///
    ///     for (IfcWall* wall : model.instances<IfcWall>()) ...
    template <class T>
    TypedRange<T> instances(bool withSubtypes = true) const {
        return TypedRange<T>(instances(T::g_pEntityType, withSubtypes));
    }

    /// What readers and writers of files need of a model; not for programs.
    ModelData& data() { return *m_data; }
    const ModelData& data() const { return *m_data; }

private:
    friend class KpIfcEntityBase;
    Range range(const KpIfcEntityType* type, bool withSubtypes) const;

    SdaiAccessMode m_mode = kReadWrite;
    std::unique_ptr<ModelData> m_data;
};

} // namespace KP_SDAI
