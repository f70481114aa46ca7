#include <math.h>
#include <stdlib.h>
#include <string.h>

#include "Values.h"
#include "../Ormak.h"

namespace ormak {

bool is_fixed_numeric(int t) { return t >= ORMAK_TINYINT && t <= ORMAK_DOUBLE && (t & (t - 1)) == 0; }

bool is_variable_numeric(int t) { return t >= ORMAK_VARTINYINT && t <= ORMAK_VARDOUBLE && (t & (t - 1)) == 0; }

int fixed_of(int t) {
    /* The ten variable-length flags stand eleven bits above their fixed types. */
    return is_variable_numeric(t) ? t >> 11 : t;
}

int member_width(int t) {
    switch (fixed_of(t)) {
    case ORMAK_SMALLINT: case ORMAK_UNSIGNED_SMALLINT: return 2;
    case ORMAK_INT: case ORMAK_UNSIGNED_INT: case ORMAK_FLOAT: return 4;
    case ORMAK_BIGINT: case ORMAK_UNSIGNED_BIGINT: case ORMAK_DOUBLE: return 8;
    default: return 1;
    }
}

Number read_number(int data_type, const void *source) {
    switch (fixed_of(data_type)) {
    case ORMAK_TINYINT: { int8_t v; memcpy(&v, source, 1); return Number::of_signed(v); }
    case ORMAK_UNSIGNED_TINYINT: { uint8_t v; memcpy(&v, source, 1); return Number::of_unsigned(v); }
    case ORMAK_SMALLINT: { int16_t v; memcpy(&v, source, 2); return Number::of_signed(v); }
    case ORMAK_UNSIGNED_SMALLINT: { uint16_t v; memcpy(&v, source, 2); return Number::of_unsigned(v); }
    case ORMAK_INT: { int32_t v; memcpy(&v, source, 4); return Number::of_signed(v); }
    case ORMAK_UNSIGNED_INT: { uint32_t v; memcpy(&v, source, 4); return Number::of_unsigned(v); }
    case ORMAK_BIGINT: { int64_t v; memcpy(&v, source, 8); return Number::of_signed(v); }
    case ORMAK_UNSIGNED_BIGINT: { uint64_t v; memcpy(&v, source, 8); return Number::of_unsigned(v); }
    case ORMAK_FLOAT: { float v; memcpy(&v, source, 4); return Number::of_real(v); }
    case ORMAK_DOUBLE: { double v; memcpy(&v, source, 8); return Number::of_real(v); }
    default: { uint8_t v; memcpy(&v, source, 1); return Number::of_unsigned(v); }
    }
}

namespace {

/* The two's complement bits of a number; a real is truncated toward zero first, and reaches
   the whole unsigned range above the signed one. Out of range there is no saturation. */
uint64_t bits_of(const Number &n) {
    if (n.kind == Number::Signed) return (uint64_t)n.s;
    if (n.kind == Number::Unsigned) return n.u;
    double t = trunc(n.d);
    if (!(t == t)) return 0;
    const double two63 = 9223372036854775808.0, two64 = 18446744073709551616.0;
    t = fmod(t, two64);
    if (t >= two63) return (uint64_t)t;
    if (t >= -two63) return (uint64_t)(int64_t)t;
    return (uint64_t)(int64_t)(t + two64);
}

double real_of(const Number &n) {
    if (n.kind == Number::Signed) return (double)n.s;
    if (n.kind == Number::Unsigned) return (double)n.u;
    return n.d;
}

template <typename T>
void put(void *target, T value) { memcpy(target, &value, sizeof value); }

} // namespace

void write_number(int data_type, void *target, const Number &number) {
    switch (fixed_of(data_type)) {
    case ORMAK_SMALLINT: case ORMAK_UNSIGNED_SMALLINT: put(target, (uint16_t)bits_of(number)); break;
    case ORMAK_INT: case ORMAK_UNSIGNED_INT: put(target, (uint32_t)bits_of(number)); break;
    case ORMAK_BIGINT: case ORMAK_UNSIGNED_BIGINT: put(target, bits_of(number)); break;
    case ORMAK_FLOAT: put(target, (float)real_of(number)); break;
    case ORMAK_DOUBLE: put(target, real_of(number)); break;
    default: put(target, (uint8_t)bits_of(number)); break;
    }
}

void store_literal(int data_type, int size, const char *text, bool hexadecimal, void *target) {
    if (text == nullptr) text = "";
    int type = fixed_of(data_type);
    if (!is_fixed_numeric(type) && type != ORMAK_OPAQUE) {
        size_t length = strlen(text);
        if (length < (size_t)size) {
            memcpy(target, text, length);
            memset((char *)target + length, 0, (size_t)size - length);
        } else {
            memcpy(target, text, (size_t)size);
        }
        return;
    }
    if (hexadecimal) {
        long value = strtol(text, nullptr, 0);
        if (type == ORMAK_FLOAT || type == ORMAK_DOUBLE) write_number(type, target, Number::of_real((double)value));
        else write_number(type, target, Number::of_signed(value));
        return;
    }
    switch (type) {
    case ORMAK_BIGINT: case ORMAK_UNSIGNED_BIGINT: write_number(type, target, Number::of_signed(atoll(text))); break;
    case ORMAK_FLOAT: case ORMAK_DOUBLE: write_number(type, target, Number::of_real(atof(text))); break;
    default: write_number(type, target, Number::of_signed(atoi(text))); break;
    }
}

} // namespace ormak
