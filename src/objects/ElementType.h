/* The element type and the dataspace of a creating statement (CREATE DATASET, CREATE
   ATTRIBUTE): built once per statement from the type, byte order, character set, tag and
   dimensions as written. */
#ifndef ORMAK_ELEMENT_TYPE_H
#define ORMAK_ELEMENT_TYPE_H

#include <antlr3.h>
#include <hdf5.h>

#include <vector>

#include "../Ormak.h"
#include "../session/Handle.h"

namespace ormak {

/* CHAR and OPAQUE take their last written dimension as the size of one value. */
inline bool is_text_type(int data_type) { return data_type == ORMAK_CHAR || data_type == ORMAK_OPAQUE; }
/* The types that have a character set. */
inline bool is_string_type(int data_type) { return data_type == ORMAK_CHAR || data_type == ORMAK_VARCHAR; }

/* What the statement says of its elements. */
struct ElementRequest {
    int data_type;
    pANTLR3_BASE_TREE compound;  /* the compound slot, for ORMAK_COMPOUND */
    int endianness;
    int char_set;
    const char *tag_value;
    const std::vector<hsize_t> &dimensions;
};

/* Dimensions of the dataspace: without the text types' size, and one element when none is
   left. */
std::vector<hsize_t> space_dimensions(int data_type, const std::vector<hsize_t> &dimensions);

/* Refuses more than 32 dimensions, as "Error when creating <kind> "<name>" as it has more than
   32 dimensions", -14. */
int check_rank(const std::vector<hsize_t> &dimensions, const char *kind, const char *name);

/* Refuses a character set on a type that is neither CHAR nor VARCHAR and a tag on a type
   that is not OPAQUE, as "Error when setting charset|tag of <kind> "<name>" as ...", -17. */
int check_type_options(int data_type, int char_set, const char *tag_value, const char *kind, const char *name);

/* Values of compound types have no literal form yet: with values to come, a compound is
   refused as "Error when creating <kind> "<name>" as values of a compound data type are not
   supported", -6. */
int check_compound_values(int data_type, bool with_values, const char *kind, const char *name);

/* The elements of a dataspace, into `count`. Input redirecting counts in int: with values to
   come, more than INT_MAX elements are refused as "Error when creating <kind> "<name>" as its
   values would be more than <INT_MAX> elements", -14; without, the count stops at INT_MAX. */
int element_count(const std::vector<hsize_t> &space_dimensions, bool with_values, const char *kind, const char *name,
                  int &count);

/* The stored type and the type in which values wait in memory: the native form of a
   numeric type, so that HDF5 turns native values into another byte order on the way. */
class ElementType {
public:
    /* Fails as "Error when setting <what> to create <kind> "<name>"", status -99. The size
       of a compound is the one its member check added up. */
    int build(const ElementRequest &request, int compound_size, const char *kind, const char *name);

    int size = 0;        /* bytes of an element, or of one member of a variable-length one */
    hid_t type = -1;     /* the type as stored */
    hid_t memory = -1;   /* the type of the values in memory */

private:
    Handle owned_type_{H5Tclose};
    Handle owned_memory_{H5Tclose};
};

} // namespace ormak

#endif
