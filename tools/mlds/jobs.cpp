// Running rules over all utterances, in one thread or in several.
#include "jobs.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace mlds_program {

namespace {

// What a thread takes at once: enough to make up for waking it.
constexpr std::size_t kBatchUtterances = 64;
constexpr std::size_t kBatchBytes = 1 << 14;

struct Batch {
    std::vector<Utterance> utterances;
    std::vector<Rendered> results;
    bool bDone = false;  // guarded by the pool's mutex
};

// Threads with a renderer each, and batches that wait for them. The first exception of a thread is
// thrown to who waits for its batch.
class Pool {
public:
    Pool(const std::shared_ptr<const mlds::RuleSet>& pRules, const Work& work, int jobs) {
        for (int i = 0; i < jobs; ++i) {
            m_renderers.push_back(std::make_unique<Renderer>(pRules, work));
        }
        m_threads.reserve(m_renderers.size());
        try {
            for (const auto& pRenderer : m_renderers) {
                m_threads.emplace_back([this, p = pRenderer.get()] { Serve(*p); });
            }
        } catch (...) {
            End();
            throw;
        }
    }
    ~Pool() { End(); }
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;

    void Add(Batch* pBatch) {
        {
            const std::lock_guard lock(m_mutex);
            m_waiting.push_back(pBatch);
        }
        m_work.notify_one();
    }

    void WaitFor(const Batch& batch) {
        std::unique_lock lock(m_mutex);
        m_done.wait(lock, [&] { return batch.bDone || m_failure; });
        if (!batch.bDone) std::rethrow_exception(m_failure);
    }

private:
    void End() {
        {
            const std::lock_guard lock(m_mutex);
            m_bEnd = true;
        }
        m_work.notify_all();
        for (std::thread& thread : m_threads) thread.join();
        m_threads.clear();
    }

    void Serve(Renderer& renderer) {
        for (;;) {
            Batch* pBatch = nullptr;
            {
                std::unique_lock lock(m_mutex);
                m_work.wait(lock, [&] { return m_bEnd || !m_waiting.empty(); });
                if (m_bEnd) return;
                pBatch = m_waiting.front();
                m_waiting.pop_front();
            }
            std::exception_ptr failure;
            try {
                for (const Utterance& utterance : pBatch->utterances) {
                    pBatch->results.push_back(renderer.Render(utterance.text));
                }
            } catch (...) {
                failure = std::current_exception();
            }
            const std::lock_guard lock(m_mutex);
            if (failure && !m_failure) m_failure = failure;
            pBatch->bDone = !failure;
            m_done.notify_one();
        }
    }

    std::vector<std::unique_ptr<Renderer>> m_renderers;
    std::vector<std::thread> m_threads;
    std::mutex m_mutex;
    std::condition_variable m_work;
    std::condition_variable m_done;
    std::deque<Batch*> m_waiting;
    std::exception_ptr m_failure;
    bool m_bEnd = false;
};

// Null at the end of the inputs.
std::unique_ptr<Batch> ReadBatch(Inputs& inputs) {
    auto pBatch = std::make_unique<Batch>();
    std::size_t nBytes = 0;
    for (Utterance utterance; pBatch->utterances.size() < kBatchUtterances &&
                              nBytes < kBatchBytes && inputs.Next(utterance);) {
        nBytes += utterance.text.size();
        pBatch->utterances.push_back(std::move(utterance));
    }
    if (pBatch->utterances.empty()) return nullptr;
    pBatch->results.reserve(pBatch->utterances.size());
    return pBatch;
}

bool RunInThreads(Pool& pool, std::size_t nAhead, Inputs& inputs, Outputs& outputs,
                  Progress& progress, std::deque<std::unique_ptr<Batch>>& batches) {
    bool bMore = true;
    while (bMore || !batches.empty()) {
        while (bMore && batches.size() < nAhead) {
            std::unique_ptr<Batch> pBatch = ReadBatch(inputs);
            bMore = pBatch != nullptr;
            if (!bMore) break;
            batches.push_back(std::move(pBatch));
            pool.Add(batches.back().get());
        }
        if (batches.empty()) break;
        const Batch& batch = *batches.front();
        pool.WaitFor(batch);
        for (std::size_t i = 0; i < batch.utterances.size(); ++i) {
            if (!outputs.Write(batch.utterances[i], batch.results[i])) return false;
        }
        progress.Show(inputs.bytesRead(), inputs.bytesInAll(), batch.utterances.back().place());
        batches.pop_front();
    }
    return true;
}

}  // namespace

bool RunAll(std::shared_ptr<const mlds::RuleSet> pRules, const Work& work, int jobs, Inputs& inputs,
            Outputs& outputs, Progress& progress) {
    if (jobs > 1) {
        // The batches outlive the threads that work on them.
        std::deque<std::unique_ptr<Batch>> batches;
        Pool pool(pRules, work, jobs);
        const std::size_t nAhead = 2 * static_cast<std::size_t>(jobs) + 1;
        return RunInThreads(pool, nAhead, inputs, outputs, progress, batches);
    }
    Renderer renderer(std::move(pRules), work);
    for (Utterance utterance; inputs.Next(utterance);) {
        if (!outputs.Write(utterance, renderer.Render(utterance.text))) return false;
        progress.Show(inputs.bytesRead(), inputs.bytesInAll(), utterance.place());
    }
    return true;
}

}  // namespace mlds_program
