/* SHOW FILL VALUE: the fill value of a dataset, as one value of the dataset's own data type,
   or none when the dataset has no fill value defined. */
#include <stdlib.h>
#include <string.h>

#include <vector>

#include "ShowProperties.h"
#include "../OrmakExecutors.h"
#include "../objects/DataTypes.h"
#include "../transfer/Values.h"

namespace {

/* The data type of the value and the bytes the language gives one element (one member of a
   variable-length value; 1 for a string pointer), or -1 for a type that is not shown. */
int classify(hid_t type, int *data_type, int *size) {
    const int flag = _ormak_get_type_flag(type);
    if (flag == ORMAK_CHAR || flag == ORMAK_OPAQUE || ormak::is_fixed_numeric(flag)) {
        *size = (int)H5Tget_size(type);
    } else if (flag == ORMAK_VARCHAR) {
        *size = 1;
    } else if (ormak::is_variable_numeric(flag)) {
        *size = ormak::member_width(flag);
    } else {
        return -1;
    }
    *data_type = flag;
    return *size > 0 ? 0 : -1;
}

/* The value read into `value` (the memory form of `memory_type`) goes into the cursor in use. */
int add_to_cursor(int data_type, int size, const void *value) {
    if (data_type == ORMAK_CHAR || data_type == ORMAK_OPAQUE) {
        int status = _ormak_cursor_add(value, 1);
        return status == ORMAK_SUCCESS ? _ormak_subcursor_add(value, size) : status;
    }
    if (data_type == ORMAK_VARCHAR) {
        const char *text = *(char *const *)value;
        return _ormak_cursor_add(text, text ? (int)strlen(text) : 0);
    }
    if (ormak::is_variable_numeric(data_type)) {
        const hvl_t *members = (const hvl_t *)value;
        if (members->p == nullptr) return _ormak_cursor_add(nullptr, 0);
        int status = _ormak_cursor_add(members->p, size);
        for (size_t i = 0; status == ORMAK_SUCCESS && i < members->len; i++)
            status = _ormak_subcursor_add((const char *)members->p + i * (size_t)size, size);
        return status;
    }
    return _ormak_cursor_add(value, size);
}

/* A copy of the value in a block of its own, with the string or members it points to in
   blocks of their own; null when memory ran out. */
void *copy_value(int data_type, int size, const void *value) {
    if (data_type == ORMAK_VARCHAR) {
        char **entry = (char **)malloc(sizeof(char *));
        if (entry == nullptr) return nullptr;
        const char *text = *(char *const *)value;
        *entry = text ? strdup(text) : nullptr;
        if (text && *entry == nullptr) {
            free(entry);
            return nullptr;
        }
        return entry;
    }
    if (ormak::is_variable_numeric(data_type)) {
        ORMAK_VARIABLE_LENGTH *record = (ORMAK_VARIABLE_LENGTH *)malloc(sizeof(ORMAK_VARIABLE_LENGTH));
        if (record == nullptr) return nullptr;
        const hvl_t *members = (const hvl_t *)value;
        record->count = members->p ? members->len : 0;
        record->address = nullptr;
        if (record->count > 0) {
            record->address = malloc(record->count * (size_t)size);
            if (record->address == nullptr) {
                free(record);
                return nullptr;
            }
            memcpy(record->address, members->p, record->count * (size_t)size);
        }
        return record;
    }
    void *block = malloc((size_t)size);
    if (block) memcpy(block, value, (size_t)size);
    return block;
}

} // namespace

extern "C" {

int ormak_show_fill_value(const char *file_dataset_name, const char *dataset_name,
                          pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                          int programming_language) {
    ormak::ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const char *what = "fill value";
    const std::string memory = "Error when showing fill value of dataset \"" +
                               std::string(dataset_name ? dataset_name : "") +
                               "\" as there is not enough memory available";
    int status = ormak::show_one_object(frame, file_dataset_name, dataset_name, what, "dataset",
                                        [&](const ormak::ShowObject &object) {
        ormak::ShowTarget target;
        int found = target.resolve_dataset(object, what, "object");
        if (found != ORMAK_SUCCESS) return found;
        H5D_fill_value_t fill;
        target.type = H5Dget_type(target.dataset);
        if (H5Pfill_value_defined(target.creation_list, &fill) < 0 || !target.type.valid())
            return target.no_information();
        int data_type = -1, size = 0;
        if (classify(target.type, &data_type, &size) != 0)
            return ormak::fail(ORMAK_ERROR_NOT_SUPPORTED,
                               "Error when showing fill value of dataset \"%s\" as data type is not supported",
                               target.name);
        const bool defined = fill != H5D_FILL_VALUE_UNDEFINED;
        /* Numbers of another byte order are read in the machine's own. */
        ormak::Handle memory_type(H5Tclose, H5Tget_native_type(target.type, H5T_DIR_ASCEND));
        if (!memory_type.valid()) return target.no_information();
        std::vector<unsigned char> value(H5Tget_size(memory_type) + 8, 0);
        if (defined && H5Pget_fill_value(target.creation_list, memory_type, value.data()) < 0)
            return target.no_information();
        const bool variable = data_type == ORMAK_VARCHAR || ormak::is_variable_numeric(data_type);
        /* The string or members HDF5 made for the value go back when this ends. */
        auto reclaim = [&] {
            if (!defined || !variable) return;
            ormak::Handle scalar(H5Sclose, H5Screate(H5S_SCALAR));
            H5Dvlen_reclaim(memory_type, scalar, H5P_DEFAULT, value.data());
        };
        if (frame.direct()) {
            ormak_cursor_clear(nullptr);
            _ormak_cursor_set_data_type(data_type);
            found = defined ? add_to_cursor(data_type, size, value.data()) : ORMAK_SUCCESS;
            reclaim();
            if (found != ORMAK_SUCCESS) return ormak::fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, "%s", memory.c_str());
            frame.adopt(nullptr, data_type, defined ? 1 : 0, size, -1);
        } else {
            void *copy = defined ? copy_value(data_type, size, value.data()) : nullptr;
            reclaim();
            if (defined && copy == nullptr)
                return ormak::fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, "%s", memory.c_str());
            frame.adopt(copy, data_type, defined ? 1 : 0, size, 0);
        }
        return frame.deliver();
    });
    return frame.finish("ormak_show_fill_value", status,
                        {{"file_dataset_name", file_dataset_name}, {"dataset_name", dataset_name}});
}

} // extern "C"
