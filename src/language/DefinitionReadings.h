/* Readings of slots that the statements defining objects share. Each reads a slot of the
   statement root; an empty slot gives the value told for a clause left out. */
#ifndef ORMAK_DEFINITION_READINGS_H
#define ORMAK_DEFINITION_READINGS_H

#include <antlr3.h>
#include <hdf5.h>

#include <vector>

namespace ormak {

/* GROUP 4, DATASET 8, ATTRIBUTE or AT 16, LINK 32, an external link 64; -1 any object. */
int read_object_type(pANTLR3_BASE_TREE slot);
/* LITTLE ENDIAN 1, BIG ENDIAN 2; NATIVE or left out -1. */
int read_endianness(pANTLR3_BASE_TREE slot);
/* ASCII 1, UTF8 2; -1 left out. */
int read_charset(pANTLR3_BASE_TREE slot);
/* TRACKED 1, INDEXED 2; -1 left out. */
int read_order(pANTLR3_BASE_TREE slot);

/* STORAGE COMPACT n DENSE m: flag 0 and both numbers, or all -1. */
struct StorageThresholds {
    int present;
    int max_compact;
    int min_dense;
};
StorageThresholds read_storage_thresholds(pANTLR3_BASE_TREE slot);

/* The data type slot and the compound slot behind it: a type keyword gives its flag and no
   compound; an empty type slot means a compound, given by the next slot whole. */
struct DataTypeSlot {
    int data_type;
    pANTLR3_BASE_TREE compound;
};
DataTypeSlot read_data_type(pANTLR3_BASE_TREE statement, int type_slot);
/* A dataset's dimensions as written: current sizes, maxima (equal to the size for a plain
   dimension, H5S_UNLIMITED for UNLIMITED) and whether any dimension has a maximum. A negative
   size, or a maximum below the size, is kept as the mark -2 for the executor to refuse. */
struct Dimensions {
    std::vector<hsize_t> current;
    std::vector<hsize_t> maximum;
    int extendible;
};
Dimensions read_dimensions(pANTLR3_BASE_TREE dimension_list);

/* A number_optional_list of chunk sizes: -1 for a comma without a number, a number above 0
   as it is, and the mark -2 for 0 or less. */
std::vector<hsize_t> read_chunk_sizes(pANTLR3_BASE_TREE number_optional_list);

/* The flag of one data type keyword. */
int data_type_flag(int token_type);

} // namespace ormak

#endif
