#pragma once

namespace KP {

/// Result code of operations that refuse rather than throw.
enum ErrorStatus : int {
    eOk = 0,           ///< done
    eInvalidInput = 1, ///< the input cannot be read as what was asked for
    eRefused = 2,      ///< refused: a bound, a null argument, a value of the wrong type; nothing has changed
    eNullEntity = 3,   ///< no instance given
    eNotAvailable = 4, ///< a file or module cannot be opened, read or written
    eCancelled = 5,    ///< who asked for it has stopped it (KpIfcProgress.h)
    eNotHandled = 18   ///< a select was asked for an alternative that it does not have
};

} // namespace KP
