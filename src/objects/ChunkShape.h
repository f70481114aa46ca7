/* The shape of a dataset's chunks: from the statement's list, or computed from the size of
   the data so that a chunk is about 16 KiB at 1 MiB of data and doubles with every tenfold
   growth, between 8 KiB and 1 MiB. */
#ifndef ORMAK_CHUNK_SHAPE_H
#define ORMAK_CHUNK_SHAPE_H

#include <hdf5.h>

#include <vector>

namespace ormak {

/* Halves the dimensions in turn, first to last and rounding up, until the chunk fits the
   target; a dimension of 0 counts as 1024. */
std::vector<hsize_t> automatic_chunk(const std::vector<hsize_t> &dimensions, int element_size);

/* The written sizes (-1 for a comma without a number), one per dimension: a left-out size is
   the dimension's; a size is cut to the dimension, or to its maximum when the dataset can
   grow (an unlimited dimension leaves it as written). `maxima` is empty when none is set. */
std::vector<hsize_t> explicit_chunk(const std::vector<hsize_t> &written, const std::vector<hsize_t> &dimensions,
                                    const std::vector<hsize_t> &maxima);

} // namespace ormak

#endif
