#include "app/settings/crashstack.h"

#ifdef _WIN32
void provideCrashStack() {}
#else

#include <csignal>
#include <sys/mman.h>

namespace {
// The handler formats its report there; SIGSTKSZ is no constant any more in newer C libraries.
constexpr std::size_t stackSize = std::size_t(64) * 1024;

class CrashStack
{
public:
    CrashStack()
        // Not from the heap, which may be what is damaged when the handler runs.
        : m_memory(mmap(nullptr, stackSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
        if (m_memory == MAP_FAILED)
            return;
        stack_t stack{};
        stack.ss_sp = m_memory;
        stack.ss_size = stackSize;
        sigaltstack(&stack, nullptr);
    }
    ~CrashStack()
    {
        if (m_memory == MAP_FAILED)
            return;
        stack_t none{};
        none.ss_flags = SS_DISABLE;
        sigaltstack(&none, nullptr);
        munmap(m_memory, stackSize);
    }
    CrashStack(const CrashStack &) = delete;
    CrashStack &operator=(const CrashStack &) = delete;

private:
    void *m_memory;
};
} // namespace

void provideCrashStack()
{
    // Made by the first call on each thread; its destructor runs at the end of that thread.
    static thread_local const CrashStack stack;
    static_cast<void>(stack);
}
#endif
