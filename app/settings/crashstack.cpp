#include "app/settings/crashstack.h"

#ifdef _WIN32
void provideCrashStack() {}
#else

#include <csignal>
#include <sys/mman.h>

namespace {
constexpr std::size_t stackSize = std::size_t(64) * 1024;

class CrashStack
{
public:
    CrashStack()
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
    static thread_local const CrashStack stack;
    static_cast<void>(stack);
}
#endif
