// A stand-in for the Java side of the memory callback: a JNIEnv whose function table
// records what it is asked and answers as the binding's static method would.
#ifndef ORMAK_FAKE_JAVA_H
#define ORMAK_FAKE_JAVA_H

#include <jni.h>
#include <stdarg.h>

#include <functional>
#include <string>

#include "Ormak.h"

namespace fake_java {

// The stand-in for the Java side: a JNIEnv whose table records what it is asked.
struct FakeJava {
    std::string class_name, method_name, signature;
    int find_class_calls = 0, method_calls = 0, static_calls = 0, deleted = 0, cleared = 0;
    int type = -1, number = -1, size = -1;
    jclass called_class = nullptr;
    jmethodID called_method = nullptr;
    bool class_missing = false, method_missing = false, method_throws = false;
    bool pending = false;
    /* What the method does instead of delivering ints, when set. */
    std::function<int(int type, int number, int size)> method;
};

inline FakeJava fake;
inline int class_token, method_token;
inline jclass const fake_class = reinterpret_cast<jclass>(&class_token);
inline jmethodID const fake_method = reinterpret_cast<jmethodID>(&method_token);

inline jclass JNICALL find_class(JNIEnv *, const char *name) {
    fake.find_class_calls++;
    fake.class_name = name;
    if (fake.class_missing) {
        fake.pending = true;  // as NoClassDefFoundError
        return nullptr;
    }
    return fake_class;
}

inline jmethodID JNICALL get_static_method_id(JNIEnv *, jclass, const char *name, const char *signature) {
    fake.method_calls++;
    fake.method_name = name;
    fake.signature = signature;
    if (fake.method_missing) {
        fake.pending = true;  // as NoSuchMethodError
        return nullptr;
    }
    return fake_method;
}

/* variableOperation itself: on a read (type 0) it delivers `size` ints into the slot's
   buffer through the accessors, as the Java class does, and answers how many. */
inline jint JNICALL call_static_int_method_v(JNIEnv *, jclass called_class, jmethodID method, va_list arguments) {
    fake.static_calls++;
    fake.called_class = called_class;
    fake.called_method = method;
    fake.type = va_arg(arguments, jint);
    fake.number = va_arg(arguments, jint);
    fake.size = va_arg(arguments, jint);
    if (fake.method_throws) {
        fake.pending = true;
        return 99;
    }
    if (fake.method) return fake.method(fake.type, fake.number, fake.size);
    if (fake.type == 0) {
        for (int i = 0; i < fake.size; i++) _ormak_variable_set_int(fake.number, 100 + i, i * 4);
    }
    return fake.size;
}

inline jboolean JNICALL exception_check(JNIEnv *) { return fake.pending ? JNI_TRUE : JNI_FALSE; }
inline void JNICALL exception_clear(JNIEnv *) {
    fake.cleared++;
    fake.pending = false;
}
inline void JNICALL delete_local_ref(JNIEnv *, jobject object) {
    if (object == fake_class) fake.deleted++;
}

/* Installs the table as the session's Java environment for as long as it lives. */
class Environment {
public:
    Environment() {
        fake = FakeJava();
        table.FindClass = find_class;
        table.GetStaticMethodID = get_static_method_id;
        table.CallStaticIntMethodV = call_static_int_method_v;
        table.ExceptionCheck = exception_check;
        table.ExceptionClear = exception_clear;
        table.DeleteLocalRef = delete_local_ref;
        environment.functions = &table;
        _ormak_java_set_environment(&environment);
    }
    ~Environment() { _ormak_java_set_environment(nullptr); }
    Environment(const Environment &) = delete;
    Environment &operator=(const Environment &) = delete;

private:
    JNINativeInterface_ table{};
    JNIEnv environment{};
};

} // namespace fake_java

#endif
