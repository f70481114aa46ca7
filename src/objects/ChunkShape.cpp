#include <math.h>
#include <stdint.h>
#include <stdlib.h>

#include <algorithm>

#include "ChunkShape.h"

namespace ormak {

namespace {

/* The product of the chunk's dimensions, truncated to an integer after each step. */
uint64_t element_count(const std::vector<double> &chunk) {
    uint64_t count = 1;
    for (double dimension : chunk) count = (uint64_t)((double)count * dimension);
    return count;
}

} // namespace

std::vector<hsize_t> automatic_chunk(const std::vector<hsize_t> &dimensions, int element_size) {
    const int rank = (int)dimensions.size();
    std::vector<double> chunk;
    for (hsize_t dimension : dimensions) chunk.push_back(dimension ? (double)dimension : 1024.0);
    const double size = element_size;
    double target = 16384.0 * pow(2.0, log10(size * (double)element_count(chunk) / 1048576.0));
    target = std::min(std::max(target, 8192.0), 1048576.0);
    for (int j = 0; rank > 0;) {
        uint64_t count = element_count(chunk);
        double chunk_size = size * (double)count;
        if (target > chunk_size) break;
        long long difference = llabs((long long)(chunk_size - target));
        if ((double)difference / target < 0.5 && chunk_size <= 1048575.0) break;
        if (count == 1) break;
        chunk[j % rank] = ceil(chunk[j % rank] / 2.0);
        j++;
    }
    std::vector<hsize_t> result;
    for (double dimension : chunk) result.push_back((hsize_t)dimension);
    return result;
}

std::vector<hsize_t> explicit_chunk(const std::vector<hsize_t> &written, const std::vector<hsize_t> &dimensions,
                                    const std::vector<hsize_t> &maxima) {
    std::vector<hsize_t> chunk;
    size_t j = 0;
    for (size_t k = 0; k < dimensions.size(); k++) {
        if (j >= written.size()) {
            chunk.push_back(dimensions[k]);
        } else if (written[j] == (hsize_t)-1) {
            chunk.push_back(dimensions[k]);
            j += 1;
        } else {
            hsize_t value = written[j];
            j += 2;
            if (maxima.empty()) chunk.push_back(std::min(value, dimensions[k]));
            else if (maxima[k] == H5S_UNLIMITED) chunk.push_back(value);
            else chunk.push_back(std::min(value, maxima[k]));
        }
    }
    return chunk;
}

} // namespace ormak
