/* Values on their way into and out of objects: the widths of the data types, literals of a
   statement converted into an element, and the plain numeric conversion between types. */
#ifndef ORMAK_VALUES_H
#define ORMAK_VALUES_H

#include <stdint.h>

namespace ormak {

bool is_fixed_numeric(int data_type);     /* TINYINT to DOUBLE */
bool is_variable_numeric(int data_type);  /* VARTINYINT to VARDOUBLE */
/* The fixed type under a variable-length one (VARINT gives INT); the type itself otherwise. */
int fixed_of(int data_type);
/* Bytes of a numeric element, or of one member of a variable-length element; 1 for others. */
int member_width(int data_type);

/* One number read from memory, kept in the kind of its source. */
struct Number {
    enum Kind { Signed, Unsigned, Real } kind = Signed;
    int64_t s = 0;
    uint64_t u = 0;
    double d = 0.0;
    static Number of_signed(int64_t v) { Number n; n.kind = Signed; n.s = v; return n; }
    static Number of_unsigned(uint64_t v) { Number n; n.kind = Unsigned; n.u = v; return n; }
    static Number of_real(double v) { Number n; n.kind = Real; n.d = v; return n; }
};

/* Reads one value of a numeric type (fixed or the member of a variable-length one). */
Number read_number(int data_type, const void *source);
/* Stores a number in the width of a numeric type: integers keep their low bytes or extend by
   the source's sign, reals truncate toward zero, integers become reals by value. */
void write_number(int data_type, void *target, const Number &number);

/* Converts one literal of a statement into the element at `target`: numbers by atoi, atoll
   or atof (strtol for hexadecimal), keeping the low bytes of the type's width; a text for
   CHAR and every type that is no number, copied into `size` bytes and zero-padded. */
void store_literal(int data_type, int size, const char *text, bool hexadecimal, void *target);

} // namespace ormak

#endif
