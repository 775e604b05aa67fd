#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <type_traits>

/// Runs `work` in a fresh child process, in which nothing has been loaded, opened or freed before; it fills the `size`
/// bytes at `result` and returns true where that went well. False where it did not, or there are no child processes.
bool runInChild(const std::function<bool()>& work, void* result, std::size_t size);

/// What `work` fills in in a child process; throws std::runtime_error where that fails.
template <class Result>
Result measuredInChild(const std::string& what, const std::function<bool(Result&)>& work) {
    static_assert(std::is_trivially_copyable_v<Result>);
    Result result{};
    if (!runInChild([&] { return work(result); }, &result, sizeof result)) {
        throw std::runtime_error("cannot measure " + what);
    }
    return result;
}
