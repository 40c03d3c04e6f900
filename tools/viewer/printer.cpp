// Printing from a thread of its own.
#include "printer.h"

#include <chrono>
#include <iostream>
#include <thread>
#include <utility>

namespace mlds_viewer {

namespace {

constexpr std::size_t kMostWaiting = 1 << 22;

}  // namespace

Printer::Printer() : m_pShared(std::make_shared<Shared>()) {
    std::thread(Run, m_pShared).detach();
}

Printer::~Printer() {
    std::unique_lock lock(m_pShared->mutex);
    m_pShared->changed.wait_for(lock, std::chrono::seconds(1),
                                [this] { return m_pShared->bIdle && m_pShared->waiting.empty(); });
}

void Printer::Print(const std::string& text) {
    const std::lock_guard lock(m_pShared->mutex);
    if (m_pShared->waiting.size() + text.size() > kMostWaiting) {
        m_pShared->bCut = true;
        return;
    }
    if (std::exchange(m_pShared->bCut, false)) m_pShared->waiting += "... lines left out ...\n";
    m_pShared->waiting += text;
    m_pShared->changed.notify_all();
}

void Printer::Run(std::shared_ptr<Shared> pShared) {
    std::unique_lock lock(pShared->mutex);
    for (;;) {
        pShared->changed.wait(lock, [&] { return !pShared->waiting.empty(); });
        const std::string text = std::exchange(pShared->waiting, {});
        pShared->bIdle = false;
        lock.unlock();
        std::cout << text << std::flush;
        lock.lock();
        pShared->bIdle = true;
        pShared->changed.notify_all();
    }
}

}  // namespace mlds_viewer
