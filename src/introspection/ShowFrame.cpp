#include "ShowFrame.h"

#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <vector>

#include "../OrmakPrivateStructures.h"
#include "../files/CanonicalPath.h"
#include "../files/FileNames.h"
#include "../language/TreeReader.h"

namespace ormak {

namespace {

/* The width that the road out is told: a string pointer counts 1. */
int width_of(int data_type) {
    switch (data_type) {
    case ORMAK_INT:
    case ORMAK_UNSIGNED_INT: return 4;
    case ORMAK_BIGINT:
    case ORMAK_UNSIGNED_BIGINT:
    case ORMAK_DOUBLE: return 8;
    default: return 1;
    }
}

} // namespace

ShowFrame::ShowFrame(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                     int programming_language)
    : post_processing_list_(post_processing_list), output_redirecting_(output_redirecting),
      programming_language_(programming_language) {}

int ShowFrame::decode() {
    int status = output_.decode(output_redirecting_);
    direct_ = post_processing_list_ == nullptr && output_.kind() == 2;
    return status;
}

bool ShowFrame::direct() const { return direct_; }

int ShowFrame::fail_memory() const { return fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, "%s", memory_message_); }

int ShowFrame::begin(int data_type, int count, const char *memory_message) {
    data_type_ = data_type;
    data_size_ = width_of(data_type);
    capacity_ = std::max(count, 0);
    added_ = 0;
    memory_message_ = memory_message;
    if (direct_) {
        ormak_cursor_clear(nullptr);
        _ormak_cursor_set_data_type(data_type);
        return ORMAK_SUCCESS;
    }
    if (result_.prepare(output_, data_type, capacity_, data_size_, programming_language_) != ORMAK_SUCCESS)
        return fail_memory();
    if (data_type == ORMAK_VARCHAR) {
        /* Until a string is added its entry holds none, so that a failure releases only
           what was made. */
        if (result_.data() != nullptr) memset(result_.data(), 0, (size_t)capacity_ * sizeof(char *));
        result_.own_elements();
    }
    return ORMAK_SUCCESS;
}

void *ShowFrame::next_slot() {
    if (added_ >= capacity_ || result_.data() == nullptr) return nullptr;
    const size_t bytes = data_type_ == ORMAK_VARCHAR ? sizeof(char *) : (size_t)data_size_;
    return (char *)result_.data() + (size_t)added_ * bytes;
}

int ShowFrame::add_bytes(const void *value, int size) {
    if (direct_) {
        if (_ormak_cursor_add(value, size) != ORMAK_SUCCESS) return fail_memory();
    } else {
        void *slot = next_slot();
        if (slot == nullptr) return ORMAK_SUCCESS;
        memcpy(slot, value, (size_t)size);
    }
    added_++;
    return ORMAK_SUCCESS;
}

int ShowFrame::add_int(int value) { return add_bytes(&value, sizeof value); }
int ShowFrame::add_bigint(int64_t value) { return add_bytes(&value, sizeof value); }
int ShowFrame::add_double(double value) { return add_bytes(&value, sizeof value); }

int ShowFrame::add_text(const char *text, int size, size_t block) {
    const size_t length = size >= 0 ? (size_t)size : strlen(text);
    if (direct_) {
        if (_ormak_cursor_add(text, (int)length) != ORMAK_SUCCESS) return fail_memory();
    } else {
        void *slot = next_slot();
        if (slot == nullptr) return ORMAK_SUCCESS;
        char *copy = (char *)malloc(std::max(block, length + 1));
        if (copy == nullptr) return fail_memory();
        memcpy(copy, text, length);
        copy[length] = '\0';
        memcpy(slot, &copy, sizeof copy);
    }
    added_++;
    return ORMAK_SUCCESS;
}

void ShowFrame::adopt(void *data, int data_type, int count, int data_size, int data_allocated) {
    data_type_ = data_type;
    data_size_ = data_size;
    capacity_ = added_ = std::max(count, 0);
    if (direct_) return;
    result_.adopt(data, data_type, count, data_size, data_allocated);
    result_.own_elements();
}

int ShowFrame::deliver() {
    if (!direct_) {
        result_.count() = added_;
        if (added_ > 0 && post_processing_list_ != nullptr) {
            int status = _ormak_post_processing(post_processing_list_, result_.data(), data_type_, &result_.count(),
                                                data_size_);
            if (status != ORMAK_SUCCESS) return status;
        }
        int status = output_.write(result_, programming_language_);
        if (status != ORMAK_SUCCESS) return status;
        added_ = result_.count();
    }
    last_data_count = (uint64_t)added_;
    return ORMAK_SUCCESS;
}

int ShowFrame::each_object(pANTLR3_BASE_TREE list, int data_type, const char *memory_message,
                           const ObjectMessage &message, const std::function<int(const ShowObject &object)> &value) {
    int status = begin(data_type, tree::count(list), memory_message);
    if (status != ORMAK_SUCCESS) return status;
    status = for_each_object(
        list, message,
        [&](const ObjectItem &item) {
            const char *name = item.object_name ? item.object_name : "";
            if (ends_with_slash(name))
                return message.fail(ORMAK_ERROR_UNKNOWN, name, " as it should not end with \"/\"");
            char path[ORMAK_TEXT_SIZE];
            if (!canonical_path(name, path))
                return message.fail(ORMAK_ERROR_UNKNOWN, name, " as its path is too long");
            return value(ShowObject{item.index, item.file_name, name, path});
        },
        -1, false);
    if (status != ORMAK_SUCCESS) return status;
    return deliver();
}

int ShowFrame::finish(const char *function, int status, std::initializer_list<TraceArg> arguments) {
    result_.release();
    std::vector<TraceArg> all(arguments.begin(), arguments.end());
    all.emplace_back("post_processing_list", (const void *)post_processing_list_);
    all.emplace_back("output_redirecting", (const void *)output_redirecting_);
    all.emplace_back("programming_language", programming_language_);
    return trace(function, status, all.data(), all.size(), true);
}

} // namespace ormak
