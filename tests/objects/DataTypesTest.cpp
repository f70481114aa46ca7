// Data types as HDF5 types, and compound member lists.
#include <string.h>

#include "OrmakTest.h"
#include "ParseRule.h"
#include "objects/DataTypes.h"

TEST(DataTypes, VariableLengthAndStringTypesAreNewCopies) {
    hid_t type = _ormak_get_data_type(ORMAK_VARINT, ORMAK_BIG_ENDIAN);
    EXPECT_EQ(H5Tget_class(type), H5T_VLEN);
    hid_t base = H5Tget_super(type);
    EXPECT_GT(H5Tequal(base, H5T_STD_I32BE), 0);
    H5Tclose(base);
    EXPECT_GE(H5Tclose(type), 0);
    for (int flag : {ORMAK_CHAR, ORMAK_VARCHAR}) {
        type = _ormak_get_data_type(flag, ORMAK_LITTLE_ENDIAN);
        EXPECT_EQ(H5Tget_class(type), H5T_STRING);
        EXPECT_EQ(H5Tget_size(type), 1u);
        EXPECT_GE(H5Tclose(type), 0);
    }
}

TEST(DataTypes, CompoundsAreBuiltMemberAfterMember) {
    with_rule_tree("COMPOUND(a AS SMALLINT, s AS VARCHAR, inner AS COMPOUND(x AS DOUBLE, o AS OPAQUE), v AS VARFLOAT)",
                   ORMAK_RULE(compound), [](pANTLR3_BASE_TREE compound, bool) {
                       int size = 0;
                       ASSERT_EQ(_ormak_check_compound_member_names("d", ORMAK_DATASET, compound, &size), 0);
                       hid_t type = H5Tcreate(H5T_COMPOUND, (size_t)size);
                       ASSERT_EQ(_ormak_create_compound(&type, compound), 0);
                       ASSERT_EQ(H5Tget_nmembers(type), 4);
                       EXPECT_EQ(H5Tget_size(type), size_t(2 + 8 + 9 + 16));
                       const size_t offsets[] = {0, 2, 10, 19};
                       const H5T_class_t classes[] = {H5T_INTEGER, H5T_STRING, H5T_COMPOUND, H5T_VLEN};
                       for (unsigned i = 0; i < 4; i++) {
                           EXPECT_EQ(H5Tget_member_offset(type, i), offsets[i]);
                           EXPECT_EQ(H5Tget_member_class(type, i), classes[i]);
                       }

                       // Flattened again, nested members carry their parent's name.
                       _ormak_compound *list = nullptr;
                       int count = 0, current = 0, offset = 0;
                       ASSERT_EQ(_ormak_get_compound(type, nullptr, &offset, &list, &count, &current), 0);
                       ASSERT_EQ(current, 6);
                       EXPECT_EQ(count, 32);
                       const char *names[] = {"a", "s", "inner", "inner.x", "inner.o", "v"};
                       const int flags[] = {ORMAK_SMALLINT, ORMAK_VARCHAR, ORMAK_COMPOUND,
                                            ORMAK_DOUBLE,   ORMAK_OPAQUE,  ORMAK_VARFLOAT};
                       // The running offset also takes in the size of a nested compound once it is
                       // walked, so members behind one stand that much further on.
                       const int member_offsets[] = {0, 2, 10, 10, 18, 19 + 9};
                       for (int i = 0; i < 6; i++) {
                           EXPECT_STREQ(list[i].name, names[i]);
                           EXPECT_EQ(list[i].data_type, flags[i]) << names[i];
                           EXPECT_EQ(list[i].offset, member_offsets[i]) << names[i];
                       }
                       free(list);
                       H5Tclose(type);
                   });
}

TEST(DataTypes, FlatteningRefusesWhatTheLanguageCanNotHold) {
    hid_t inner = H5Tcreate(H5T_COMPOUND, 4);
    H5Tinsert(inner, "i", 0, H5T_NATIVE_INT);
    hid_t over_compound = H5Tvlen_create(inner);
    hid_t outer = H5Tcreate(H5T_COMPOUND, 4 + sizeof(hvl_t));
    H5Tinsert(outer, "first", 0, H5T_NATIVE_INT);
    H5Tinsert(outer, "bad", 4, over_compound);
    _ormak_compound *list = nullptr;
    int count = 0, current = 0, offset = 0;
    EXPECT_EQ(_ormak_get_compound(outer, nullptr, &offset, &list, &count, &current), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(list, nullptr);
    H5Tclose(outer);
    H5Tclose(over_compound);
    H5Tclose(inner);
}
