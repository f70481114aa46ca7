// Data types as HDF5 types, and compound member lists.
#include <string.h>

#include "OrmakTest.h"
#include "ParseRule.h"
#include "objects/DataTypes.h"

TEST(DataTypes, CompoundTreesAreFlat) {
    EXPECT_EQ(parse_rule("COMPOUND(a AS INT, b AS CHAR(10), c AS unsigned varint)", ORMAK_RULE(compound)),
              "(LIST a AS INT , b AS CHAR ( 10 ) , c AS unsigned varint)");
    EXPECT_EQ(parse_rule("COMPOUND(a AS DOUBLE, inner AS COMPOUND(a AS OPAQUE(3), z AS VARCHAR))", ORMAK_RULE(compound)),
              "(LIST a AS DOUBLE , inner AS (LIST a AS OPAQUE ( 3 ) , z AS VARCHAR))");
    EXPECT_EQ(parse_rule("COMPOUND()", ORMAK_RULE(compound)), "ERROR");
    EXPECT_EQ(parse_rule("little endian", ORMAK_RULE(data_type)), "ERROR");
    EXPECT_EQ(parse_rule("UNSIGNED BIGINT", ORMAK_RULE(data_type)), "UNSIGNED BIGINT");
}

// One signed and one unsigned integer of different widths and a floating type stand for the
// table the types are made from.
TEST(DataTypes, FixedTypesInEveryByteOrder) {
    const struct {
        int flag;
        H5T_class_t type_class;
        size_t size;
        H5T_sign_t sign;
        hid_t native;
    } rows[] = {
        {ORMAK_TINYINT, H5T_INTEGER, 1, H5T_SGN_2, H5T_NATIVE_SCHAR},
        {ORMAK_UNSIGNED_SMALLINT, H5T_INTEGER, 2, H5T_SGN_NONE, H5T_NATIVE_USHORT},
        {ORMAK_UNSIGNED_BIGINT, H5T_INTEGER, 8, H5T_SGN_NONE, H5T_NATIVE_ULLONG},
        {ORMAK_FLOAT, H5T_FLOAT, 4, H5T_SGN_ERROR, H5T_NATIVE_FLOAT},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.flag);
        // The native form is the library's own type, which is never closed.
        EXPECT_EQ(_ormak_get_data_type(row.flag, -1), row.native);
        for (int endianness : {ORMAK_LITTLE_ENDIAN, ORMAK_BIG_ENDIAN}) {
            hid_t type = _ormak_get_data_type(row.flag, endianness);
            EXPECT_EQ(H5Tget_class(type), row.type_class);
            EXPECT_EQ(H5Tget_size(type), row.size);
            if (row.type_class == H5T_INTEGER) EXPECT_EQ(H5Tget_sign(type), row.sign);
            EXPECT_EQ(H5Tget_order(type), endianness == ORMAK_LITTLE_ENDIAN ? H5T_ORDER_LE : H5T_ORDER_BE);
        }
    }
}

TEST(DataTypes, VariableLengthAndStringTypesAreNewCopies) {
    hid_t type = _ormak_get_data_type(ORMAK_VARINT, ORMAK_BIG_ENDIAN);
    EXPECT_EQ(H5Tget_class(type), H5T_VLEN);
    hid_t base = H5Tget_super(type);
    EXPECT_GT(H5Tequal(base, H5T_STD_I32BE), 0);
    H5Tclose(base);
    EXPECT_GE(H5Tclose(type), 0);
    type = _ormak_get_data_type(ORMAK_UNSIGNED_VARTINYINT, -1);
    base = H5Tget_super(type);
    EXPECT_GT(H5Tequal(base, H5T_NATIVE_UCHAR), 0);
    H5Tclose(base);
    H5Tclose(type);
    for (int flag : {ORMAK_CHAR, ORMAK_VARCHAR}) {
        type = _ormak_get_data_type(flag, ORMAK_LITTLE_ENDIAN);
        EXPECT_EQ(H5Tget_class(type), H5T_STRING);
        EXPECT_EQ(H5Tget_size(type), 1u);
        EXPECT_GE(H5Tclose(type), 0);
    }
}

TEST(DataTypes, MemberNamesAndSizes) {
    with_rule_tree("COMPOUND(a AS INT, b AS CHAR(10), c AS VARCHAR, d AS VARINT, e AS COMPOUND(a AS DOUBLE, f AS OPAQUE))",
                   ORMAK_RULE(compound), [](pANTLR3_BASE_TREE compound, bool) {
                       ASSERT_NE(compound, nullptr);
                       int size = 0;
                       // A nested member may bear an outer member's name; the sizes just add up.
                       EXPECT_EQ(_ormak_check_compound_member_names("d", ORMAK_DATASET, compound, &size), 0);
                       EXPECT_EQ(size, 4 + 1 + 8 + 16 + 8 + 1);
                   });
    with_rule_tree("COMPOUND(x AS INT, y AS INT, x AS DOUBLE)", ORMAK_RULE(compound), [](pANTLR3_BASE_TREE compound, bool) {
        int size = 0;
        EXPECT_EQ(_ormak_check_compound_member_names("d", ORMAK_DATASET, compound, &size), ORMAK_ERROR_ALREADY_EXISTS);
        EXPECT_STREQ(ormak_error_get_message(), "Error when creating dataset \"d\" as compound member \"x\" already exists");
    });
    ormak_execute(nullptr);
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
