/* The frame that every SHOW statement shares: a typed list of values that goes straight
   into the cursor in use when the statement has neither post-processing nor an INTO other
   than CURSOR, and otherwise through one buffer (the memory variable's own block when the
   values fit in it), post-processing and the road out.

   An executor of one value, or of values it knows in advance:

       ormak::ShowFrame frame(post_processing_list, output_redirecting, programming_language);
       int status = frame.decode();
       ... find the value; a failure found before `begin` leaves the cursor alone ...
       if (status == ORMAK_SUCCESS) status = frame.begin(ORMAK_INT, 1, "<memory message>");
       if (status == ORMAK_SUCCESS) status = frame.add_int(value);
       if (status == ORMAK_SUCCESS) status = frame.deliver();
       return frame.finish("ormak_show_x", status, {{"own_argument", own_argument}});

   An executor of one value for each object of a "[file] name" list hands the list to
   `each_object`, which does begin, the items and deliver. */
#ifndef ORMAK_SHOW_FRAME_H
#define ORMAK_SHOW_FRAME_H

#include <stddef.h>
#include <stdint.h>

#include <functional>
#include <initializer_list>
#include <string>

#include <antlr3.h>

#include "../objects/ObjectStatement.h"
#include "../session/Session.h"
#include "../transfer/OutputRedirecting.h"

namespace ormak {

/* One item of an object list as `each_object` hands it on: its file is in use, its name
   does not end with "/", and `path` is its canonical path (object_name_list holds the
   components). */
struct ShowObject {
    int index;
    const char *file_name;   /* null when the item names no file */
    const char *object_name; /* as written */
    const char *path;
};

class ShowFrame {
public:
    ShowFrame(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
              int programming_language);
    ShowFrame(const ShowFrame &) = delete;
    ShowFrame &operator=(const ShowFrame &) = delete;

    /* Decodes the INTO clause. A statement's checks that must leave even a wrong clause
       unread come before it; the reading of values that can fail without touching the
       cursor comes after it and before `begin`. */
    int decode();

    /* Whether the values go straight into the cursor in use: no post-processing, and no
       INTO or INTO CURSOR. Known once `decode` succeeded. */
    bool direct() const;

    /* Starts a result of at most `count` values of `data_type`: ORMAK_INT, ORMAK_BIGINT,
       their unsigned forms (added with add_int and add_bigint), ORMAK_DOUBLE or
       ORMAK_VARCHAR. Directly, the cursor in use is cleared and typed; otherwise the buffer
       is made. `memory_message` is the statement's text for memory
       running out, here or in any later step; it must outlive the frame's use. */
    int begin(int data_type, int count, const char *memory_message);

    /* The next value, in the type given to `begin`. */
    int add_int(int value);
    int add_bigint(int64_t value);
    int add_double(double value);
    /* A string: directly, `size` bytes of it (its length when `size` is -1) go into the
       cursor; otherwise a copy goes into a new block of at least `block` bytes. */
    int add_text(const char *text, int size = -1, size_t block = 0);

    /* A result of any data type that the statement made itself, in place of `begin` and the
       adds. Directly, the statement has cleared, typed and filled the cursor in use, and
       `data` is null; otherwise the frame takes `data` as ResultBuffer::adopt does, with
       the strings or member blocks its values point to, and frees what is not handed over. */
    void adopt(void *data, int data_type, int count, int data_size, int data_allocated);

    /* After the last value: post-processing (not on an empty result), the road out, and
       last_data_count. Only success sets the count. */
    int deliver();

    /* One value for each item of a "[file] name" list: `begin` with the list's length, then
       for each item in order its file in use (opened for the item when it names one, and
       closed after it), a refused trailing "/", the canonical path and `value`, which adds
       the item's value; then `deliver`. `message` is the statement's plain text about one
       object ("Error when showing type of object \"%s\""): a missing file in use gives -4
       with " as no file is in use" behind it, a trailing "/" -99 with " as it should not end
       with \"/\"". A failing item ends the statement; directly, the values found before it
       stay in the cursor. */
    int each_object(pANTLR3_BASE_TREE list, int data_type, const char *memory_message, const ObjectMessage &message,
                    const std::function<int(const ShowObject &object)> &value);

    /* The number of values so far. */
    int count() const { return added_; }

    /* The last act of every SHOW executor: releases the buffer (strings that went to a
       memory variable stay the caller's) and, while debug is on, prints the call with the
       statement's own arguments, then post_processing_list, output_redirecting and
       programming_language, its return and the cursor. Returns `status`. */
    int finish(const char *function, int status, std::initializer_list<TraceArg> arguments = {});

private:
    int fail_memory() const;
    /* Room for the next value in the buffer, or null when the result is full. */
    void *next_slot();
    /* One fixed-width value into the cursor or the next slot of the buffer. */
    int add_bytes(const void *value, int size);

    pANTLR3_BASE_TREE post_processing_list_;
    pANTLR3_BASE_TREE output_redirecting_;
    int programming_language_;
    OutputClause output_;
    ResultBuffer result_;
    bool direct_ = true;
    int data_type_ = -1;
    int data_size_ = 0;
    int capacity_ = 0;
    int added_ = 0;
    const char *memory_message_ = "";
};

} // namespace ormak

#endif
