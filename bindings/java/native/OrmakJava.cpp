/* The native methods of ot.ormak.Ormak: each passes straight to an exported function of the
   library. What the binding decides lives in Ormak.java. */
#include <jni.h>
#include <string.h>

#include <vector>

#include "Ormak.h"
#include "ot_ormak_Ormak.h"

namespace {

/* Scratch addresses for the slots of Java variables: the library needs a slot's address to
   be anything but the all-ones mark of a free slot, and never reads through it. */
char slot_marks[8];

/* Bytes of the library as a Java array; null stays null. */
jbyteArray bytes(JNIEnv *environment, const char *data, jsize size) {
    if (data == nullptr) return nullptr;
    jbyteArray array = environment->NewByteArray(size);
    if (array != nullptr) environment->SetByteArrayRegion(array, 0, size, (const jbyte *)data);
    return array;
}

} // namespace

extern "C" {

JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_executeScript(JNIEnv *environment, jclass, jbyteArray script) {
    jsize size = environment->GetArrayLength(script);
    /* The recognizer wants a NUL behind the text. */
    std::vector<char> text((size_t)size + 1, '\0');
    environment->GetByteArrayRegion(script, 0, size, (jbyte *)text.data());
    /* Callbacks into Java must use the environment of the thread that runs the script. */
    _ormak_java_set_environment(environment);
    return _ormak_execute(text.data(), size, 4);
}

JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_getStatus(JNIEnv *, jclass) { return ormak_execute_get_status(); }
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_getErrorLine(JNIEnv *, jclass) { return ormak_error_get_line(); }
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_getErrorPosition(JNIEnv *, jclass) { return ormak_error_get_position(); }
JNIEXPORT jlong JNICALL Java_ot_ormak_Ormak_getLastDataCount(JNIEnv *, jclass) {
    return (jlong)_ormak_get_last_data_count();
}

JNIEXPORT jbyteArray JNICALL Java_ot_ormak_Ormak_errorMessage(JNIEnv *environment, jclass) {
    int size = 0;
    const char *message = _ormak_error_get_message_with_size(&size);
    return bytes(environment, message, size);
}

JNIEXPORT void JNICALL Java_ot_ormak_Ormak_variableRegister(JNIEnv *, jclass, jint number, jint transient) {
    _ormak_variable_register(number, (uintptr_t)&slot_marks[number & 7], transient);
}
JNIEXPORT void JNICALL Java_ot_ormak_Ormak_variableUnregister(JNIEnv *, jclass, jint number) {
    _ormak_variable_unregister(number);
}
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_variableGetDataType(JNIEnv *, jclass, jint number) {
    return _ormak_variable_get_data_type(number);
}
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_variableGetCount(JNIEnv *, jclass, jint number) {
    return _ormak_variable_get_count(number);
}
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_variableGetSize(JNIEnv *, jclass, jint number) {
    return _ormak_variable_get_size(number);
}

/* The accessors of the buffer in a slot, called back from variableOperation. */
JNIEXPORT void JNICALL Java_ot_ormak_Ormak_variableSetChar(JNIEnv *, jclass, jint number, jbyte data, jint position) {
    _ormak_variable_set_char(number, (char)data, position);
}
JNIEXPORT void JNICALL Java_ot_ormak_Ormak_variableSetShort(JNIEnv *, jclass, jint number, jshort data,
                                                            jint position) {
    _ormak_variable_set_short(number, data, position);
}
JNIEXPORT void JNICALL Java_ot_ormak_Ormak_variableSetInt(JNIEnv *, jclass, jint number, jint data, jint position) {
    _ormak_variable_set_int(number, data, position);
}
JNIEXPORT void JNICALL Java_ot_ormak_Ormak_variableSetLong(JNIEnv *, jclass, jint number, jlong data, jint position) {
    _ormak_variable_set_long(number, data, position);
}
JNIEXPORT void JNICALL Java_ot_ormak_Ormak_variableSetFloat(JNIEnv *, jclass, jint number, jfloat data,
                                                            jint position) {
    _ormak_variable_set_float(number, data, position);
}
JNIEXPORT void JNICALL Java_ot_ormak_Ormak_variableSetDouble(JNIEnv *, jclass, jint number, jdouble data,
                                                             jint position) {
    _ormak_variable_set_double(number, data, position);
}
JNIEXPORT void JNICALL Java_ot_ormak_Ormak_variableSetString(JNIEnv *environment, jclass, jint number,
                                                             jbyteArray data, jint position) {
    if (data == nullptr) {
        _ormak_variable_set_string(number, nullptr, position, 0);
        return;
    }
    jsize size = environment->GetArrayLength(data);
    std::vector<char> text((size_t)size + 1, '\0');
    environment->GetByteArrayRegion(data, 0, size, (jbyte *)text.data());
    _ormak_variable_set_string(number, text.data(), position, size);
}

JNIEXPORT jbyte JNICALL Java_ot_ormak_Ormak_variableGetChar(JNIEnv *, jclass, jint number, jint position) {
    return (jbyte)_ormak_variable_get_char(number, position);
}
JNIEXPORT jshort JNICALL Java_ot_ormak_Ormak_variableGetShort(JNIEnv *, jclass, jint number, jint position) {
    return _ormak_variable_get_short(number, position);
}
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_variableGetInt(JNIEnv *, jclass, jint number, jint position) {
    return _ormak_variable_get_int(number, position);
}
JNIEXPORT jlong JNICALL Java_ot_ormak_Ormak_variableGetLong(JNIEnv *, jclass, jint number, jint position) {
    return _ormak_variable_get_long(number, position);
}
JNIEXPORT jfloat JNICALL Java_ot_ormak_Ormak_variableGetFloat(JNIEnv *, jclass, jint number, jint position) {
    return _ormak_variable_get_float(number, position);
}
JNIEXPORT jdouble JNICALL Java_ot_ormak_Ormak_variableGetDouble(JNIEnv *, jclass, jint number, jint position) {
    return _ormak_variable_get_double(number, position);
}
JNIEXPORT jbyteArray JNICALL Java_ot_ormak_Ormak_variableGetString(JNIEnv *environment, jclass, jint number,
                                                                   jint position) {
    const char *text = _ormak_variable_get_string(number, position);
    return bytes(environment, text, text == nullptr ? 0 : (jsize)strlen(text));
}

/* The cursor in use. */
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_cursorGetCount(JNIEnv *, jclass) { return ormak_cursor_get_count(nullptr); }
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_cursorGetDataType(JNIEnv *, jclass) {
    return ormak_cursor_get_data_type(nullptr);
}
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_cursorGetPosition(JNIEnv *, jclass) {
    return ormak_cursor_get_position(nullptr);
}
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_cursorGetSize(JNIEnv *, jclass) { return ormak_cursor_get_size(nullptr); }
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_cursorFirst(JNIEnv *, jclass) { return ormak_cursor_first(nullptr); }
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_cursorLast(JNIEnv *, jclass) { return ormak_cursor_last(nullptr); }
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_cursorNext(JNIEnv *, jclass) { return ormak_cursor_next(nullptr); }
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_cursorPrevious(JNIEnv *, jclass) { return ormak_cursor_previous(nullptr); }
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_cursorAbsolute(JNIEnv *, jclass, jint position) {
    return ormak_cursor_absolute(nullptr, position);
}
JNIEXPORT jint JNICALL Java_ot_ormak_Ormak_cursorRelative(JNIEnv *, jclass, jint position) {
    return ormak_cursor_relative(nullptr, position);
}
JNIEXPORT jbyteArray JNICALL Java_ot_ormak_Ormak_cursorGetBytes(JNIEnv *environment, jclass) {
    const char *data = (const char *)ormak_cursor_get(nullptr);
    return bytes(environment, data, data == nullptr ? 0 : ormak_cursor_get_size(nullptr));
}

} // extern "C"
