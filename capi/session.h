// What all functions of the C interface go through.
#pragma once

#include <exception>
#include <new>
#include <string>
#include <utility>

#include "ombrix/catalogue.h"
#include "ombrix/effect_on_rows.h"
#include "ombrix/host.h"
#include "ombrix/ombrix.h"

namespace ombrix::capi {

/// Ends a function with this status and sentence.
struct Failure {
    ombrix_status status;
    std::string sentence;
};

/// Whether this is the child of a process that had used the host.
bool IsForked() noexcept;

/// Notes the sentence for this thread.
ombrix_status Failed(ombrix_status status, const std::string& sentence) noexcept;
const char* LastError() noexcept;

/// Lets this thread use the process's host for the time of its scope.
class Session {
  public:
    /// Makes the host when there is none. Throws a Failure in a child of a process that has used it, and in a progress
    /// function.
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    host::Host& Host() const;
    /// Of all plug-ins; loads those that are installed, if that has not been done.
    const catalogue::Catalogue& Catalogue() const;
    void Load(const char* plugin) const;

  private:
    host::Host::Turn turn_;
};

/// Runs `body`, and makes a status of what it throws.
template <class Body>
ombrix_status Guarded(Body body) noexcept {
    try {
        body();
        return OMBRIX_OK;
    } catch (const Failure& failure) {
        return Failed(failure.status, failure.sentence);
    } catch (const catalogue::NotFound& error) {
        return Failed(OMBRIX_NOT_FOUND, error.what());
    } catch (const catalogue::BadRows& error) {
        return Failed(OMBRIX_INVALID_ARGUMENT, error.what());
    } catch (const catalogue::Refused& error) {
        return Failed(OMBRIX_REFUSED, error.what());
    } catch (const catalogue::Cancelled& error) {
        return Failed(OMBRIX_CANCELLED, error.what());
    } catch (const std::bad_alloc&) {
        return Failed(OMBRIX_NO_MEMORY, "there is not enough memory");
    } catch (const std::exception& error) {
        return Failed(OMBRIX_FAILED, error.what());
    } catch (...) {
        return Failed(OMBRIX_FAILED, "something failed that has no name");
    }
}

/// A Failure when the caller passed a null pointer.
template <class Pointer>
Pointer Required(Pointer pointer, const char* what) {
    if (pointer == nullptr) throw Failure{OMBRIX_INVALID_ARGUMENT, std::string("null was passed for ") + what};
    return pointer;
}

}  // namespace ombrix::capi
