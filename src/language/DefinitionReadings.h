/* Readings of slots that the statements defining objects share. Each reads a slot of the
   statement root; an empty slot gives the value told for a clause left out. */
#ifndef ORMAK_DEFINITION_READINGS_H
#define ORMAK_DEFINITION_READINGS_H

#include <antlr3.h>

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
/* The flag of one data type keyword. */
int data_type_flag(int token_type);

} // namespace ormak

#endif
