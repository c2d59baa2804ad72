#pragma once

#include <kelcore/imaging/toolkit.h>

#include <csetjmp>

namespace kel::toolkit {

/// The way out of C libraries whose error handlers must not return.
///
/// A jump runs no destructors. What a library is called with therefore lives outside the work that is handed to Run,
/// and the work itself keeps nothing that has to be destroyed while it calls the library.
class LongJump {
public:
    /// Does @p work. @return its status, or that of the Fail which ended it.
    template <class Work>
    SHORT Run(Work work) {
        // NOLINTNEXTLINE(cert-err52-cpp): the libraries' own way
        return setjmp(m_place) == 0 ? work() : m_status;
    }

    /// Called by a library within Run, by way of its error handler.
    [[noreturn]] void Fail(SHORT status) {
        m_status = status;
        std::longjmp(m_place, /*value*/ 1);
    }

private:
    std::jmp_buf m_place = {};
    SHORT m_status = kDamaged;
};

} // namespace kel::toolkit
