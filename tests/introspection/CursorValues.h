// The values of the cursor in use, read as texts or numbers, for the listing tests.
#ifndef ORMAK_CURSOR_VALUES_H
#define ORMAK_CURSOR_VALUES_H

#include <stdint.h>

#include <string>
#include <vector>

#include "Ormak.h"

using Texts = std::vector<std::string>;
using Ints = std::vector<int64_t>;
using Doubles = std::vector<double>;

inline Texts cursor_texts() {
    Texts values;
    for (int i = 0; i < ormak_cursor_get_count(nullptr); i++) {
        ormak_cursor_absolute(nullptr, i);
        const char *text = ormak_cursor_get_char(nullptr);
        values.push_back(text ? text : "(null)");
    }
    return values;
}

/* Integers of any width, doubles otherwise. */
inline Ints cursor_ints() {
    Ints values;
    const int type = ormak_cursor_get_data_type(nullptr);
    for (int i = 0; i < ormak_cursor_get_count(nullptr); i++) {
        ormak_cursor_absolute(nullptr, i);
        if (type == ORMAK_BIGINT || type == ORMAK_UNSIGNED_BIGINT)
            values.push_back(*ormak_cursor_get_bigint(nullptr));
        else
            values.push_back(*ormak_cursor_get_int(nullptr));
    }
    return values;
}

inline Doubles cursor_doubles() {
    Doubles values;
    for (int i = 0; i < ormak_cursor_get_count(nullptr); i++) {
        ormak_cursor_absolute(nullptr, i);
        values.push_back(*ormak_cursor_get_double(nullptr));
    }
    return values;
}

#endif
