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
    void SetUp() override {
        OrmakTest::SetUp();
        ormak_variable_unregister_all();
    }
    void TearDown() override {
        ormak_variable_unregister_all();
        _ormak_java_set_environment(nullptr);
        OrmakTest::TearDown();
    }

    /* What a statement writing into a transient variable leaves in its slot. */
    static void mark_written(int number) { variable_list[number].used = 0; }
};

TEST_F(Variables, EightSlotsThenFull) {
    double blocks[9];
    for (int i = 0; i < 8; i++) EXPECT_EQ(ormak_variable_register(&blocks[i]), i);
    EXPECT_EQ(ormak_variable_register(&blocks[8]), ORMAK_ERROR_FULL);
    EXPECT_EQ(ormak_variable_transient_register(&blocks[8]), ORMAK_ERROR_FULL);
    EXPECT_EQ(ormak_variable_get_number(&blocks[8]), ORMAK_ERROR_NOT_REGISTERED);
    // A full list still finds an address that it holds.
    EXPECT_EQ(ormak_variable_register(&blocks[7]), 7);
    EXPECT_EQ(ormak_variable_transient_register(&blocks[5]), 5);
    EXPECT_EQ(variable_list[5].transient, 0);
}

TEST_F(Variables, TheLowestFreeSlotIsTakenButAHeldAddressKeepsItsOwn) {
    int blocks[6];
    for (int i = 0; i < 5; i++) ASSERT_EQ(ormak_variable_register(&blocks[i]), i);
    // Registering again keeps the slot and switches its kind.
    EXPECT_EQ(ormak_variable_transient_register(&blocks[0]), 0);
    EXPECT_EQ(variable_list[0].transient, 0);
    EXPECT_EQ(ormak_variable_register(&blocks[0]), 0);
    EXPECT_EQ(variable_list[0].transient, -1);
    EXPECT_EQ(ormak_variable_unregister(&blocks[2]), 0);
    EXPECT_EQ(ormak_variable_unregister(&blocks[2]), ORMAK_ERROR_NOT_REGISTERED);
    EXPECT_EQ(ormak_variable_register(&blocks[4]), 4);
    EXPECT_EQ(ormak_variable_transient_register(&blocks[5]), 2);
    // The kind of the slot's last holder does not carry over to a plain newcomer.
    EXPECT_EQ(ormak_variable_unregister(&blocks[5]), 0);
    EXPECT_EQ(ormak_variable_register(&blocks[5]), 2);
    EXPECT_EQ(variable_list[2].transient, -1);
}

TEST_F(Variables, LookupsTellANullAddressFromAnUnregisteredOne) {
    int held = 0, other = 0;
    ASSERT_EQ(ormak_variable_register(&held), 0);
    int (*lookups[])(const void *) = {ormak_variable_unregister,    ormak_variable_get_number,
                                      ormak_variable_get_data_type, ormak_variable_get_count,
                                      ormak_variable_get_size,      ormak_variable_get_dimension_count};
    for (auto lookup : lookups) {
        EXPECT_EQ(lookup(nullptr), ORMAK_ERROR_NO_ADDRESS);
        EXPECT_EQ(lookup(&other), ORMAK_ERROR_NOT_REGISTERED);
    }
    EXPECT_EQ(ormak_variable_register(nullptr), ORMAK_ERROR_NO_ADDRESS);
    EXPECT_EQ(ormak_variable_transient_register(nullptr), ORMAK_ERROR_NO_ADDRESS);
    // A negative index is refused before the slot is searched; a null address before that.
    for (auto lookup : {ormak_variable_get_dimension, ormak_variable_get_element_count}) {
        EXPECT_EQ(lookup(&other, -1), ORMAK_ERROR_INVALID_VALUE);
        EXPECT_EQ(lookup(&other, 0), ORMAK_ERROR_NOT_REGISTERED);
        EXPECT_EQ(lookup(nullptr, -1), ORMAK_ERROR_NO_ADDRESS);
        EXPECT_EQ(lookup(nullptr, 0), ORMAK_ERROR_NO_ADDRESS);
    }
    // None of the failures touched the held slot.
    EXPECT_EQ(ormak_variable_get_number(&held), 0);
    EXPECT_EQ(ormak_variable_register(&other), 1);
}

TEST_F(Variables, ASlotReportsWhatWasWrittenIntoIt) {
    int block[6];
    ASSERT_EQ(ormak_variable_register(block), 0);
    EXPECT_EQ(ormak_variable_get_data_type(block), -1);
    EXPECT_EQ(ormak_variable_get_dimension(block, 0), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(ormak_variable_get_element_count(block, 0), ORMAK_ERROR_INVALID_VALUE);

    // Indexes past the dimensions and elements written are refused.
    _ormak_variable *slot = &variable_list[0];
    slot->data_type = ORMAK_INT;
    slot->dimension_count = 1;
    slot->dimension_list[0] = 6;
    EXPECT_EQ(ormak_variable_get_dimension(block, 0), 6);
    EXPECT_EQ(ormak_variable_get_dimension(block, 1), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(_ormak_variable_get_dimension(0, 1), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(_ormak_variable_get_dimension(0, -1), ORMAK_ERROR_INVALID_VALUE);

    // The element list is the slot's own: unregistering frees it (the sanitizer build
    // reports a leak otherwise) and the free state comes back.
    slot->element_list = (int *)malloc(2 * sizeof(int));
    slot->element_list[0] = 3;
    slot->element_list[1] = 5;
    slot->element_count = 2;
    EXPECT_EQ(ormak_variable_get_element_count(block, 1), 5);
    EXPECT_EQ(ormak_variable_get_element_count(block, 2), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(ormak_variable_unregister(block), 0);
    EXPECT_EQ(slot->address, UINTPTR_MAX);
    EXPECT_EQ(slot->element_list, nullptr);
    EXPECT_EQ(slot->element_count, 0);
    EXPECT_EQ(slot->data_type, -1);
    EXPECT_EQ(slot->dimension_count, 0);
}

TEST_F(Variables, TheAllOnesAddressLooksLikeAFreeSlot) {
    const void *all_ones = (const void *)UINTPTR_MAX;
    int a = 0, b = 0;
    EXPECT_EQ(ormak_variable_get_number(all_ones), 0);
    ASSERT_EQ(ormak_variable_register(&a), 0);
    EXPECT_EQ(ormak_variable_get_number(all_ones), 1);
    // "Registering" it takes nothing: the next real address gets the same number.
    EXPECT_EQ(ormak_variable_register(all_ones), 1);
    EXPECT_EQ(ormak_variable_register(&b), 1);
    EXPECT_EQ(ormak_variable_get_number(all_ones), 2);
}

TEST_F(Variables, UnregisterAllFreesEverySlotWhateverItsState) {
    int blocks[3];
    ASSERT_EQ(ormak_variable_register(&blocks[0]), 0);
    ASSERT_EQ(ormak_variable_transient_register(&blocks[1]), 1);
    ASSERT_EQ(ormak_variable_transient_register(&blocks[2]), 2);
    mark_written(2);
    variable_list[0].element_list = (int *)malloc(sizeof(int));
    variable_list[0].element_count = 1;
    EXPECT_EQ(ormak_variable_unregister_all(), 0);
    for (int i = 0; i < 3; i++) EXPECT_EQ(ormak_variable_get_number(&blocks[i]), ORMAK_ERROR_NOT_REGISTERED);
    for (int i = 0; i < ORMAK_VARIABLE_COUNT; i++) {
        EXPECT_EQ(variable_list[i].address, UINTPTR_MAX);
        EXPECT_EQ(variable_list[i].element_list, nullptr);
        EXPECT_EQ(variable_list[i].transient, -1);
        EXPECT_EQ(variable_list[i].used, -1);
    }
    EXPECT_EQ(ormak_variable_unregister_all(), 0);
}

TEST_F(Variables, BindingsHoldSlotsByNumber) {
    int a = 0, b = 0;
    EXPECT_EQ(_ormak_variable_register(5, (uintptr_t)&a, 0), 0);
    EXPECT_EQ(ormak_variable_get_number(&a), 5);
    EXPECT_EQ(variable_list[5].transient, 0);
    EXPECT_EQ(ormak_variable_register(&b), 0);
    // No search: the same address can be put in a second slot by number.
    EXPECT_EQ(_ormak_variable_register(6, (uintptr_t)&a, -1), 0);
    EXPECT_EQ(variable_list[6].transient, -1);
    EXPECT_EQ(_ormak_variable_unregister(5), 0);
    EXPECT_EQ(ormak_variable_get_number(&a), 6);
    // Numbers outside the list are refused rather than written past it.
    for (int number : {-1, ORMAK_VARIABLE_COUNT}) {
        EXPECT_EQ(_ormak_variable_register(number, (uintptr_t)&a, 0), ORMAK_ERROR_NOT_REGISTERED);
        EXPECT_EQ(_ormak_variable_unregister(number), ORMAK_ERROR_NOT_REGISTERED);
        EXPECT_EQ(_ormak_variable_get_count(number), ORMAK_ERROR_NOT_REGISTERED);
        EXPECT_EQ(_ormak_variable_get_dimension(number, 0), ORMAK_ERROR_NOT_REGISTERED);
    }
}

TEST_F(Variables, ValueAccessorsTakeByteOffsetsWithNoAlignment) {
    alignas(8) unsigned char buffer[64] = {};
    ASSERT_EQ(_ormak_variable_register(3, (uintptr_t)buffer, -1), 0);

    // Odd offsets: the sanitizer build would report a misaligned access.
    _ormak_variable_set_char(3, 'x', 17);
    _ormak_variable_set_short(3, -12345, 19);
    _ormak_variable_set_int(3, -123456789, 21);
    _ormak_variable_set_long(3, INT64_C(-1234567890123), 25);
    _ormak_variable_set_float(3, 1.25f, 33);
    _ormak_variable_set_double(3, -0.125, 37);
    EXPECT_EQ(_ormak_variable_get_char(3, 17), 'x');
    EXPECT_EQ(_ormak_variable_get_short(3, 19), -12345);
    EXPECT_EQ(_ormak_variable_get_int(3, 21), -123456789);
    EXPECT_EQ(_ormak_variable_get_long(3, 25), INT64_C(-1234567890123));
    EXPECT_EQ(_ormak_variable_get_float(3, 33), 1.25f);
    EXPECT_EQ(_ormak_variable_get_double(3, 37), -0.125);
    // Each value has exactly its width: the neighbours are intact and the rest is zero.
    int32_t in_place;
    memcpy(&in_place, buffer + 21, sizeof in_place);
    EXPECT_EQ(in_place, -123456789);
    EXPECT_EQ(buffer[16], 0);
    EXPECT_EQ(buffer[18], 0);
    EXPECT_EQ(buffer[45], 0);
}

TEST_F(Variables, StringAccessorsCopyIntoAnArrayOfPointers) {
    char *strings[3] = {nullptr, nullptr, nullptr};
    ASSERT_EQ(_ormak_variable_register(1, (uintptr_t)strings, -1), 0);
    char text[] = "hello world";
    _ormak_variable_set_string(1, text, 0, 5);
    char unterminated[3] = {'a', 'b', 'c'};
    _ormak_variable_set_string(1, unterminated, 2, 3);
    EXPECT_STREQ(strings[0], "hello");
    EXPECT_EQ(strings[1], nullptr);
    EXPECT_STREQ(strings[2], "abc");
    // A copy, not the caller's text; and the getter hands back the stored pointer itself.
    text[0] = 'j';
    EXPECT_STREQ(_ormak_variable_get_string(1, 0), "hello");
    EXPECT_EQ(_ormak_variable_get_string(1, 2), strings[2]);
    _ormak_variable_set_string(1, text, 1, 0);
    EXPECT_STREQ(strings[1], "");
    free(strings[1]);
    // A string that cannot be made leaves null in its place.
    _ormak_variable_set_string(1, nullptr, 1, 4);
    EXPECT_EQ(_ormak_variable_get_string(1, 1), nullptr);
    free(strings[0]);
    free(strings[2]);
}

TEST_F(Variables, WrittenTransientVariablesAreReleasedAtTheEndOfAScript) {
    int blocks[5];
    for (int language : {4, 16}) {
        SCOPED_TRACE(language);
        ASSERT_EQ(ormak_variable_transient_register(&blocks[0]), 0);
        ASSERT_EQ(ormak_variable_transient_register(&blocks[1]), 1);
        ASSERT_EQ(ormak_variable_register(&blocks[2]), 2);
        ASSERT_EQ(ormak_variable_transient_register(&blocks[3]), 3);
        ASSERT_EQ(ormak_variable_transient_register(&blocks[4]), 4);
        mark_written(0);
        mark_written(1);
        mark_written(4);
        // Registering a written transient variable as plain keeps it past the script.
        ASSERT_EQ(ormak_variable_register(&blocks[4]), 4);
        EXPECT_EQ(variable_list[4].used, 0);

        EXPECT_EQ(_ormak_execute("", 0, language), 256 | 1 << 9 | 1 << 10);
        EXPECT_EQ(ormak_variable_get_number(&blocks[0]), ORMAK_ERROR_NOT_REGISTERED);
        EXPECT_EQ(ormak_variable_get_number(&blocks[1]), ORMAK_ERROR_NOT_REGISTERED);
        EXPECT_EQ(ormak_variable_get_number(&blocks[2]), 2);
        EXPECT_EQ(ormak_variable_get_number(&blocks[4]), 4);
        // Not written: stays for the next script, flags unchanged.
        EXPECT_EQ(ormak_variable_get_number(&blocks[3]), 3);
        EXPECT_EQ(variable_list[3].transient, 0);
        EXPECT_EQ(variable_list[3].used, -1);
        // Nothing released: the word is the status alone.
        EXPECT_EQ(_ormak_execute("", 0, language), 0);
        ormak_variable_unregister_all();
    }
}

TEST_F(Variables, ThePackedWordCarriesAFailureAndTheHighestSlot) {
    int blocks[8];
    for (int i = 0; i < 8; i++) ASSERT_EQ(ormak_variable_transient_register(&blocks[i]), i);
    mark_written(7);
    // Whatever the outcome: a failed script releases too, its status cut to the low byte.
    EXPECT_EQ(_ormak_execute("DROP FILE no-such-file", 22, 4), (ORMAK_ERROR_NOT_FOUND & 0xFF) | 256 | 1 << 16);
    EXPECT_EQ(ormak_execute_get_status(), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(ormak_variable_get_number(&blocks[7]), ORMAK_ERROR_NOT_REGISTERED);
    for (int i = 0; i < 7; i++) EXPECT_EQ(ormak_variable_get_number(&blocks[i]), i);
}

TEST_F(Variables, NativeCallersGetThePlainStatusAndStillLoseWrittenTransients) {
    int a = 0, b = 0;
    ASSERT_EQ(ormak_variable_transient_register(&a), 0);
    ASSERT_EQ(ormak_variable_transient_register(&b), 1);
    mark_written(0);
    EXPECT_EQ(_ormak_execute("", 0, 1), 0);
    EXPECT_EQ(ormak_variable_get_number(&a), ORMAK_ERROR_NOT_REGISTERED);
    EXPECT_EQ(ormak_variable_get_number(&b), 1);
    mark_written(1);
    EXPECT_EQ(ormak_execute("DROP FILE no-such-file"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(ormak_variable_get_number(&b), ORMAK_ERROR_NOT_REGISTERED);
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
    EXPECT_EQ(fake.called_method, fake_method);
    EXPECT_EQ(fake.number, 2);
    int values[3];
    memcpy(values, buffer, sizeof values);
    EXPECT_EQ(values[2], 102);
    // Every call looks the class up afresh and gives its reference back.
    EXPECT_EQ(_ormak_variable_operation(1, 2, 12), 12);
    EXPECT_EQ(fake.type, 1);
    EXPECT_EQ(fake.find_class_calls, 2);
    EXPECT_EQ(fake.static_calls, 2);
    EXPECT_EQ(fake.deleted, 2);
}

TEST_F(JavaCallback, AMissingEnvironmentClassOrMethodAnswersZeroAndLeavesNothingPending) {
    fake.class_missing = true;
    EXPECT_EQ(_ormak_variable_operation(0, 0, 4), 0);
    EXPECT_EQ(fake.static_calls, 0);
    EXPECT_FALSE(fake.pending);

    fake = FakeJava();
    fake.method_missing = true;
    EXPECT_EQ(_ormak_variable_operation(0, 0, 4), 0);
    EXPECT_EQ(fake.static_calls, 0);
    EXPECT_FALSE(fake.pending);
    EXPECT_EQ(fake.deleted, 1);

    // An exception out of the method itself does not count as values delivered.
    fake = FakeJava();
    fake.method_throws = true;
    EXPECT_EQ(_ormak_variable_operation(1, 0, 4), 0);
    EXPECT_EQ(fake.static_calls, 1);
    EXPECT_FALSE(fake.pending);
    EXPECT_EQ(fake.deleted, 1);

    fake = FakeJava();
    _ormak_java_set_environment(nullptr);
    EXPECT_EQ(_ormak_variable_operation(0, 0, 4), 0);
    EXPECT_EQ(fake.find_class_calls, 0);
}
