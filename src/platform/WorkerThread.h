#pragma once

#include <exception>
#include <functional>
#include <thread>
#include <utility>

namespace nv {

// Starts work on a thread of its own. What work throws is kept in failure, for the starting thread
// to throw again after the join; finished runs on the worker at the end, thrown or not.
inline std::thread startWorker(const std::function<void()>& work, std::exception_ptr& failure,
                               std::function<void()> finished) {
    return std::thread([&work, &failure, finished = std::move(finished)] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
        finished();
    });
}

} // namespace nv
