#include "extractor/command/OrderedReading.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace velmorant::telemetry {

void readInOrder(const std::vector<std::string>& paths, unsigned jobs, const Reader& read,
                 const Consumer& consume) {
    std::mutex mutex;
    std::condition_variable changed;
    std::map<std::size_t, Result<Telemetry>> ready;
    std::size_t next = 0;
    std::size_t consumed = 0;
    const std::size_t ahead = 2 * std::size_t{jobs};
    const auto work = [&] {
        std::unique_lock lock(mutex);
        while (next < paths.size()) {
            const std::size_t index = next++;
            changed.wait(lock, [&] { return index < consumed + ahead; });
            lock.unlock();
            auto outcome = read(paths[index]);
            lock.lock();
            ready.emplace(index, std::move(outcome));
            changed.notify_all();
        }
    };
    std::vector<std::jthread> workers;
    for (unsigned i = 0; i < jobs && i < paths.size(); ++i) {
        workers.emplace_back(work);
    }
    for (std::size_t index = 0; index < paths.size();) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return ready.contains(index); });
        auto outcome = std::move(ready.extract(index).mapped());
        lock.unlock();
        const Reading reading = consume(index, std::move(outcome));
        lock.lock();
        index = reading == Reading::ends ? paths.size() : index + 1;
        next = std::max(next, reading == Reading::ends ? paths.size() : 0);
        consumed = index;
        changed.notify_all();
    }
}

} // namespace velmorant::telemetry
