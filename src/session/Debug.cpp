/* The cursor dump of the debug trace: every element of the cursor in use, one a line. */
#include <inttypes.h>
#include <stdio.h>

#include "../OrmakPrivateStructures.h"

namespace {

/* Prints the members of a variable-length value from its subcursor: "a b c>". */
template <typename T>
void print_members(ORMAK_CURSOR *cursor, const char *format) {
    int count = ormak_subcursor_get_count(cursor);
    for (int i = 0; i < count; i++) {
        ormak_subcursor_absolute(cursor, i);
        printf(format, *(T *)ormak_subcursor_get(cursor));
        printf(i + 1 < count ? " " : "");
    }
    printf(">\n");
}

/* The bytes of a fixed text or an opaque value, from its subcursor. */
void print_bytes(ORMAK_CURSOR *cursor, bool as_text) {
    int count = ormak_subcursor_get_count(cursor);
    for (int i = 0; i < count; i++) {
        ormak_subcursor_absolute(cursor, i);
        unsigned char byte = *(unsigned char *)ormak_subcursor_get(cursor);
        if (!as_text) printf("%u", byte);
        else if (byte) putchar(byte);
    }
    printf(">\n");
}

void rewind_subcursor(ORMAK_CURSOR *cursor) {
    ormak_cursor_data *element = cursor->current;
    if (element && element->subcursor) {
        element->subcursor->position = -1;
        element->subcursor->current = nullptr;
    }
}

void print_element(ORMAK_CURSOR *cursor) {
    void *data = ormak_cursor_get(cursor);
    int type = cursor->data_type;
    bool members = ormak_subcursor_get_count(cursor) > 0;
    bool variable = type >= ORMAK_VARTINYINT && type <= ORMAK_VARDOUBLE;
    if (data == nullptr && type != ORMAK_VARCHAR && !variable) {
        printf("   data <>\n");
        return;
    }
    switch (type) {
    case ORMAK_TINYINT: printf("   data <%d>\n", *(int8_t *)data); return;
    case ORMAK_SMALLINT: printf("   data <%d>\n", *(int16_t *)data); return;
    case ORMAK_INT: printf("   data <%d>\n", *(int32_t *)data); return;
    case ORMAK_UNSIGNED_TINYINT: printf("   data <%u>\n", *(uint8_t *)data); return;
    case ORMAK_UNSIGNED_SMALLINT: printf("   data <%u>\n", *(uint16_t *)data); return;
    case ORMAK_UNSIGNED_INT: printf("   data <%u>\n", *(uint32_t *)data); return;
    case ORMAK_BIGINT: printf("   data <%lld>\n", (long long)*(int64_t *)data); return;
    case ORMAK_UNSIGNED_BIGINT: printf("   data <%llu>\n", (unsigned long long)*(uint64_t *)data); return;
    case ORMAK_FLOAT: printf("   data <%f>\n", *(float *)data); return;
    case ORMAK_DOUBLE: printf("   data <%f>\n", *(double *)data); return;
    case ORMAK_VARCHAR: printf("   data <%s>\n", data ? (const char *)data : ""); return;
    default: break;
    }
    printf("   data <");
    if (type == ORMAK_CHAR || type == ORMAK_OPAQUE) {
        print_bytes(cursor, type == ORMAK_CHAR);
    } else if (!variable) {
        printf("ORMAK_UNDEFINED>\n");
    } else if (!members) {
        /* A null variable-length value has no members. */
        printf(">\n");
    } else if (type == ORMAK_VARTINYINT) print_members<int8_t>(cursor, "%d");
    else if (type == ORMAK_VARSMALLINT) print_members<int16_t>(cursor, "%d");
    else if (type == ORMAK_VARINT) print_members<int32_t>(cursor, "%d");
    else if (type == ORMAK_UNSIGNED_VARTINYINT) print_members<uint8_t>(cursor, "%u");
    else if (type == ORMAK_UNSIGNED_VARSMALLINT) print_members<uint16_t>(cursor, "%u");
    else if (type == ORMAK_UNSIGNED_VARINT) print_members<uint32_t>(cursor, "%u");
    else if (type == ORMAK_VARBIGINT) print_members<int64_t>(cursor, "%" PRId64);
    else if (type == ORMAK_UNSIGNED_VARBIGINT) print_members<uint64_t>(cursor, "%" PRIu64);
    else if (type == ORMAK_VARFLOAT) print_members<float>(cursor, "%f");
    else print_members<double>(cursor, "%f");
    rewind_subcursor(cursor);
}

} // namespace

extern "C" void _ormak_show_debug_information(void) {
    ORMAK_CURSOR *cursor = current_cursor;
    printf("CURSOR DATA TYPE <%d>\n", cursor->data_type);
    cursor->position = -1;
    cursor->current = nullptr;
    while (ormak_cursor_next(cursor) == ORMAK_SUCCESS) print_element(cursor);
    printf("CURSOR COUNT <%d>\n\n", cursor->count);
    cursor->position = -1;
    cursor->current = nullptr;
}
