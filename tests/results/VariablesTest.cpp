// Memory variables: registration by address and by number, what the slots report, the
// release of written transient variables at the end of a script, the value accessors of
// the bindings and the road of the Java callback, with a JNIEnv table standing in for Java.
#include <stdlib.h>
#include <string.h>

#include <memory>
#include <string>

#include "FakeJava.h"
#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"

class Variables : public OrmakTest {
protected:
    void TearDown() override {
        _ormak_java_set_environment(nullptr);
        OrmakTest::TearDown();
    }

    /* What a statement writing into a transient variable leaves in its slot. */
    static void mark_written(int number) { variable_list[number].used = 0; }
};

TEST_F(Variables, SlotsAreTakenLowestFirstUpToEight) {
    double blocks[9];
    for (int i = 0; i < 8; i++) EXPECT_EQ(ormak_variable_register(&blocks[i]), i);
    EXPECT_EQ(ormak_variable_register(&blocks[8]), ORMAK_ERROR_FULL);
    // A full list still finds an address that it holds; registering again switches the kind.
    EXPECT_EQ(ormak_variable_transient_register(&blocks[5]), 5);
    EXPECT_EQ(variable_list[5].transient, 0);
    EXPECT_EQ(ormak_variable_unregister(&blocks[2]), 0);
    EXPECT_EQ(ormak_variable_unregister(&blocks[2]), ORMAK_ERROR_NOT_REGISTERED);
    EXPECT_EQ(ormak_variable_register(&blocks[8]), 2);
}

TEST_F(Variables, LookupsTellANullAddressFromAnUnregisteredOne) {
    int held = 0, other = 0;
    ASSERT_EQ(ormak_variable_register(&held), 0);
    int (*lookups[])(const void *) = {ormak_variable_unregister, ormak_variable_get_number,
                                      ormak_variable_get_data_type, ormak_variable_get_count};
    for (auto lookup : lookups) {
        EXPECT_EQ(lookup(nullptr), ORMAK_ERROR_NO_ADDRESS);
        EXPECT_EQ(lookup(&other), ORMAK_ERROR_NOT_REGISTERED);
    }
    // A negative index is refused before the slot is searched; a null address before that.
    EXPECT_EQ(ormak_variable_get_dimension(&other, -1), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(ormak_variable_get_dimension(nullptr, -1), ORMAK_ERROR_NO_ADDRESS);
    EXPECT_EQ(ormak_variable_get_number(&held), 0);
}

TEST_F(Variables, ASlotOwnsItsElementListAndIndexesAreChecked) {
    int block[6];
    ASSERT_EQ(ormak_variable_register(block), 0);
    EXPECT_EQ(ormak_variable_get_dimension(block, 0), ORMAK_ERROR_INVALID_VALUE);
    _ormak_variable *slot = &variable_list[0];
    slot->data_type = ORMAK_INT;
    slot->dimension_count = 1;
    slot->dimension_list[0] = 6;
    EXPECT_EQ(ormak_variable_get_dimension(block, 0), 6);
    EXPECT_EQ(ormak_variable_get_dimension(block, 1), ORMAK_ERROR_INVALID_VALUE);

    // Unregistering frees the element list (the sanitizer build reports a leak otherwise)
    // and the free state comes back.
    slot->element_list = (int *)malloc(2 * sizeof(int));
    slot->element_list[1] = 5;
    slot->element_count = 2;
    EXPECT_EQ(ormak_variable_get_element_count(block, 1), 5);
    EXPECT_EQ(ormak_variable_get_element_count(block, 2), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(ormak_variable_unregister(block), 0);
    EXPECT_EQ(slot->address, UINTPTR_MAX);
    EXPECT_EQ(slot->element_list, nullptr);
    EXPECT_EQ(slot->data_type, -1);
    EXPECT_EQ(slot->dimension_count, 0);

    // Unregistering all frees every slot, written transient ones included.
    ASSERT_EQ(ormak_variable_transient_register(block), 0);
    mark_written(0);
    slot->element_list = (int *)malloc(sizeof(int));
    slot->element_count = 1;
    EXPECT_EQ(ormak_variable_unregister_all(), 0);
    EXPECT_EQ(slot->address, UINTPTR_MAX);
    EXPECT_EQ(slot->used, -1);
}

TEST_F(Variables, BindingsHoldSlotsByNumber) {
    int a = 0;
    EXPECT_EQ(_ormak_variable_register(5, (uintptr_t)&a, 0), 0);
    // No search: the same address can be put in a second slot by number.
    EXPECT_EQ(_ormak_variable_register(6, (uintptr_t)&a, -1), 0);
    EXPECT_EQ(_ormak_variable_unregister(5), 0);
    EXPECT_EQ(ormak_variable_get_number(&a), 6);
    // Numbers outside the list are refused rather than written past it.
    for (int number : {-1, ORMAK_VARIABLE_COUNT}) {
        EXPECT_EQ(_ormak_variable_register(number, (uintptr_t)&a, 0), ORMAK_ERROR_NOT_REGISTERED);
        EXPECT_EQ(_ormak_variable_get_dimension(number, 0), ORMAK_ERROR_NOT_REGISTERED);
    }
}

TEST_F(Variables, AccessorsTakeByteOffsetsWithNoAlignment) {
    alignas(8) unsigned char buffer[64] = {};
    ASSERT_EQ(_ormak_variable_register(3, (uintptr_t)buffer, -1), 0);
    // Odd offsets: the sanitizer build would report a misaligned access.
    _ormak_variable_set_int(3, -123456789, 21);
    _ormak_variable_set_double(3, -0.125, 37);
    EXPECT_EQ(_ormak_variable_get_int(3, 21), -123456789);
    EXPECT_EQ(_ormak_variable_get_double(3, 37), -0.125);
    EXPECT_EQ(buffer[20], 0);
    EXPECT_EQ(buffer[45], 0);

    // Strings are copied into an array of pointers; the getter gives the stored pointer.
    char *strings[2] = {nullptr, nullptr};
    ASSERT_EQ(_ormak_variable_register(1, (uintptr_t)strings, -1), 0);
    char text[] = "hello world";
    _ormak_variable_set_string(1, text, 0, 5);
    text[0] = 'j';
    EXPECT_STREQ(strings[0], "hello");
    EXPECT_EQ(_ormak_variable_get_string(1, 0), strings[0]);
    // A string that cannot be made leaves null in its place.
    _ormak_variable_set_string(1, nullptr, 1, 4);
    EXPECT_EQ(strings[1], nullptr);
    free(strings[0]);
}

TEST_F(Variables, WrittenTransientVariablesAreReleasedAtTheEndOfAScript) {
    int blocks[4];
    ASSERT_EQ(ormak_variable_transient_register(&blocks[0]), 0);
    ASSERT_EQ(ormak_variable_register(&blocks[1]), 1);
    ASSERT_EQ(ormak_variable_transient_register(&blocks[2]), 2);
    ASSERT_EQ(ormak_variable_transient_register(&blocks[3]), 3);
    mark_written(0);
    mark_written(3);
    // Registering a written transient variable as plain keeps it past the script.
    ASSERT_EQ(ormak_variable_register(&blocks[3]), 3);

    // The word of a binding tells which slots went; a native caller gets the status alone.
    EXPECT_EQ(_ormak_execute("", 0, 4), 256 | 1 << 9);
    EXPECT_EQ(ormak_variable_get_number(&blocks[0]), ORMAK_ERROR_NOT_REGISTERED);
    EXPECT_EQ(ormak_variable_get_number(&blocks[3]), 3);
    // Not written: stays for the next script, flags unchanged.
    EXPECT_EQ(ormak_variable_get_number(&blocks[2]), 2);
    EXPECT_EQ(variable_list[2].used, -1);
    EXPECT_EQ(_ormak_execute("", 0, 4), 0);

    // Whatever the outcome: a failed script releases too, its status cut to the low byte.
    mark_written(2);
    EXPECT_EQ(_ormak_execute("DROP FILE no-such-file", 22, 4), (ORMAK_ERROR_NOT_FOUND & 0xFF) | 256 | 1 << 11);
    EXPECT_EQ(ormak_execute_get_status(), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(ormak_variable_get_number(&blocks[2]), ORMAK_ERROR_NOT_REGISTERED);
    ASSERT_EQ(ormak_variable_transient_register(&blocks[2]), 0);
    mark_written(0);
    EXPECT_EQ(ormak_execute("DROP FILE no-such-file"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(ormak_variable_get_number(&blocks[2]), ORMAK_ERROR_NOT_REGISTERED);
}

namespace {

using namespace fake_java;

class JavaCallback : public Variables {
protected:
    void SetUp() override {
        Variables::SetUp();
        java = std::make_unique<Environment>();
    }
    void TearDown() override {
        java.reset();
        Variables::TearDown();
    }
    std::unique_ptr<Environment> java;
};

} // namespace

TEST_F(JavaCallback, TheStaticMethodMovesValuesThroughTheAccessors) {
    alignas(8) unsigned char buffer[16] = {};
    ASSERT_EQ(_ormak_variable_register(2, (uintptr_t)buffer, -1), 0);
    EXPECT_EQ(_ormak_variable_operation(0, 2, 3), 3);
    EXPECT_EQ(fake.class_name, "ot/ormak/Ormak");
    EXPECT_EQ(fake.method_name, "variableOperation");
    EXPECT_EQ(fake.signature, "(III)I");
    int values[3];
    memcpy(values, buffer, sizeof values);
    EXPECT_EQ(values[2], 102);
    // Every call looks the class up afresh and gives its reference back.
    EXPECT_EQ(_ormak_variable_operation(1, 2, 12), 12);
    EXPECT_EQ(fake.find_class_calls, 2);
    EXPECT_EQ(fake.deleted, 2);
}

TEST_F(JavaCallback, AMissingEnvironmentClassOrMethodAnswersZeroAndLeavesNothingPending) {
    for (int failure = 0; failure < 3; failure++) {
        SCOPED_TRACE(failure);
        fake = FakeJava();
        fake.class_missing = failure == 0;
        fake.method_missing = failure == 1;
        // An exception out of the method itself does not count as values delivered.
        fake.method_throws = failure == 2;
        EXPECT_EQ(_ormak_variable_operation(1, 0, 4), 0);
        EXPECT_EQ(fake.static_calls, failure == 2 ? 1 : 0);
        EXPECT_FALSE(fake.pending);
        if (failure) EXPECT_EQ(fake.deleted, 1);
    }
    fake = FakeJava();
    _ormak_java_set_environment(nullptr);
    EXPECT_EQ(_ormak_variable_operation(0, 0, 4), 0);
    EXPECT_EQ(fake.find_class_calls, 0);
}
