/* An owned HDF5 identifier that is closed when it goes out of scope. */
#ifndef ORMAK_HANDLE_H
#define ORMAK_HANDLE_H

#include <hdf5.h>

namespace ormak {

class Handle {
public:
    using Closer = herr_t (*)(hid_t);
    explicit Handle(Closer closer, hid_t id = -1) : closer_(closer), id_(id) {}
    ~Handle() { reset(); }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    hid_t get() const { return id_; }
    bool valid() const { return id_ >= 0; }
    operator hid_t() const { return id_; }
    Handle &operator=(hid_t id) { reset(); id_ = id; return *this; }
    /* Gives up ownership, for an identifier that is handed on to a longer-lived record. */
    hid_t release() { hid_t id = id_; id_ = -1; return id; }
    /* Closes now; returns the result of the close (0 when nothing was open). */
    herr_t reset() {
        herr_t result = 0;
        if (id_ >= 0) result = closer_(id_);
        id_ = -1;
        return result;
    }

private:
    Closer closer_;
    hid_t id_;
};

} // namespace ormak

#endif
