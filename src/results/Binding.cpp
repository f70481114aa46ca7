/* The flat layer that bindings reach memory variables through. A Java variable is never
   touched by the library: results go through a buffer of the library's own whose address
   sits in the slot, and the Java side moves the values with the accessors below, called
   back from its static method Ormak.variableOperation. */
#include <jni.h>
#include <stddef.h>
#include <stdlib.h>
#include <string.h>

#include "../OrmakPrivateStructures.h"

namespace {

/* The buffer of a slot, as bytes. */
char *buffer_of(int number) { return (char *)variable_list[number].address; }

/* Positions are byte offsets for every width and the buffer may hold mixed widths, so
   values go in and out by memcpy, with no alignment assumed. */
template <typename T> void put(int number, ptrdiff_t offset, T data) {
    memcpy(buffer_of(number) + offset, &data, sizeof data);
}

template <typename T> T take(int number, ptrdiff_t offset) {
    T data;
    memcpy(&data, buffer_of(number) + offset, sizeof data);
    return data;
}

/* Drops a pending Java exception, so that the host may go on calling into Java. */
void clear_exception(JNIEnv *environment) {
    if (environment->ExceptionCheck()) environment->ExceptionClear();
}

} // namespace

extern "C" {

void _ormak_variable_set_char(int number, char data, int position) { put(number, position, data); }
void _ormak_variable_set_short(int number, short data, int position) { put(number, position, data); }
void _ormak_variable_set_int(int number, int data, int position) { put(number, position, data); }
void _ormak_variable_set_long(int number, int64_t data, int position) { put(number, position, data); }
void _ormak_variable_set_float(int number, float data, int position) { put(number, position, data); }
void _ormak_variable_set_double(int number, double data, int position) { put(number, position, data); }

char _ormak_variable_get_char(int number, int position) { return take<char>(number, position); }
short _ormak_variable_get_short(int number, int position) { return take<short>(number, position); }
int _ormak_variable_get_int(int number, int position) { return take<int>(number, position); }
int64_t _ormak_variable_get_long(int number, int position) { return take<int64_t>(number, position); }
float _ormak_variable_get_float(int number, int position) { return take<float>(number, position); }
double _ormak_variable_get_double(int number, int position) { return take<double>(number, position); }

/* Strings are elements of an array of pointers, so `position` is an index here. The copy
   belongs to the buffer and so to the statement; when it cannot be made (no memory, or
   no text to copy) the element is null and the statement sees a missing value. */
void _ormak_variable_set_string(int number, char *data, int position, int size) {
    char *copy = nullptr;
    if (data != nullptr && size >= 0) {
        copy = (char *)malloc((size_t)size + 1);
        if (copy) {
            memcpy(copy, data, (size_t)size);
            copy[size] = '\0';
        }
    }
    put(number, (ptrdiff_t)position * (ptrdiff_t)sizeof(char *), copy);
}

char *_ormak_variable_get_string(int number, int position) {
    return take<char *>(number, (ptrdiff_t)position * (ptrdiff_t)sizeof(char *));
}

void _ormak_java_set_environment(void *environment) { java_environment = environment; }

/* Asks the Java side to move `size` units between its variable `number` and the buffer in
   the slot: `type` 0 to read into the buffer, 1 to write out of it. The class and method
   are looked up on each call, as the class may be loaded after the environment is set.
   A missing environment, class or method, or an exception thrown by the method, must not
   bring the host down: any pending exception is cleared and the answer is 0, so a read
   delivers no values. */
int _ormak_variable_operation(int type, int number, int size) {
    JNIEnv *environment = (JNIEnv *)java_environment;
    if (environment == nullptr) return 0;
    jclass ormak_class = environment->FindClass("ot/ormak/Ormak");
    if (ormak_class == nullptr) {
        clear_exception(environment);
        return 0;
    }
    jint result = 0;
    jmethodID method = environment->GetStaticMethodID(ormak_class, "variableOperation", "(III)I");
    if (method == nullptr) {
        clear_exception(environment);
    } else {
        result = environment->CallStaticIntMethod(ormak_class, method, (jint)type, (jint)number, (jint)size);
        if (environment->ExceptionCheck()) {
            environment->ExceptionClear();
            result = 0;
        }
    }
    /* One statement may call back many times inside one native frame of the host: give
       the class reference back rather than let local references pile up. */
    environment->DeleteLocalRef(ormak_class);
    return result;
}

} // extern "C"
