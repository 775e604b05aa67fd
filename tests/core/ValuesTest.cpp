#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcBoolean.h>
#include <KpIfcCore/KpIfcException.h>
#include <KpIfcCore/KpIfcGUID.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace {

using namespace KP_SDAI;

TEST(Guid, HoldsUpTo22CharactersAndFillsWithZeros) {
    KpIfcGUID id("2O2Fr$t4X7Zf8NOew3FLOH");
    EXPECT_STREQ(id, "2O2Fr$t4X7Zf8NOew3FLOH");
    id = "2O2Fr$t4X7Zf8NOew3FLOH and more";
    EXPECT_STREQ(id, "2O2Fr$t4X7Zf8NOew3FLOH");
    id = "short";
    EXPECT_STREQ(id, "short");
    for (int i = 5; i < KpIfcGUID::kLength; ++i) EXPECT_EQ(id.chars()[i], '\0') << i;
    EXPECT_TRUE(id == KpIfcGUID("short"));
    id = nullptr;
    EXPECT_STREQ(id, "");
    EXPECT_FALSE(id.isUnset());
    id = "same";
    id = id.constStr() + 1;
    EXPECT_STREQ(id, "ame");
    EXPECT_TRUE(KpIfcGUID("0") < KpIfcGUID("1"));
    EXPECT_FALSE(KpIfcGUID("1") < KpIfcGUID("1"));
}

TEST(Guid, IsUnsetAtFirst) {
    KpIfcGUID id;
    EXPECT_TRUE(id.isUnset());
    EXPECT_STREQ(id, Consts::KpStringUnset);
    EXPECT_LE(std::strlen(Consts::KpStringUnset), std::size_t{KpIfcGUID::kLength});
    EXPECT_EQ(sizeof id, 23u);
    id = "x";
    id = Consts::KpStringUnset;
    EXPECT_TRUE(id.isUnset());
}

TEST(TruthValues, HaveACodeForNoValue) {
    EXPECT_FALSE(KpIfcBoolean().isSet());
    EXPECT_FALSE(KpIfcLogical().isSet());
    EXPECT_EQ(KpIfcBoolean::Unset, 2);
    EXPECT_EQ(KpIfcLogical::Unset, 3);
    EXPECT_TRUE(KpIfcBoolean(false).isSet());
    EXPECT_FALSE(KpIfcBoolean(KpIfcBoolean::Unset).isTrue());
    EXPECT_FALSE(KpIfcBoolean(false) == KpIfcBoolean());
    EXPECT_TRUE(KpIfcLogical(KpIfcLogical::Unknown).isSet());
    EXPECT_FALSE(KpIfcLogical(KpIfcLogical::Unknown).isTrue());
    EXPECT_FALSE(KpIfcLogical(KpIfcLogical::Unknown) == KpIfcLogical());
}

TEST(UnsetMarkers, CompareByTheEqualSign) {
    EXPECT_TRUE(std::isfinite(Consts::KpRealUnset));
    EXPECT_TRUE(Consts::KpRealUnset == Consts::KpRealUnset);
    EXPECT_EQ(Consts::KpIntUnset, 2147483647);
    EXPECT_TRUE(Consts::KpHandleUnset.isNull());
    EXPECT_EQ(Consts::KpHandleUnset.openObject(), nullptr);
    EXPECT_EQ(Consts::KpHandleUnset.instanceName(), 0u);
    EXPECT_EQ(Consts::KpHandleUnset.model(), nullptr);
}

TEST(Exception, IsCaughtAsAStandardOne) {
    try {
        throw KpIfcException(180, "SDAI-model access not read-write", "IFC2X3::IfcWall::putAttr");
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "SDAI-model access not read-write");
        const auto* own = dynamic_cast<const KpIfcException*>(&error); // across the libraries' border
        ASSERT_NE(own, nullptr);
        EXPECT_EQ(own->code(), 180u);
        EXPECT_STREQ(own->where(), "IFC2X3::IfcWall::putAttr");
    }
}

} // namespace
