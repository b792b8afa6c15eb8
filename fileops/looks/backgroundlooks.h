#pragma once

#include <QObject>
#include <QSemaphore>

#include <functional>
#include <memory>
#include <optional>

/**
 * Runs what looks at disks beside the thread of its owner, one after the other, as a disk that sleeps or is
 * behind a network may let a look wait for long, and one that is gone for ever. What a look found is handed
 * over on the owner's thread. A look that does not come back is left behind, so it must not know its owner.
 */
class BackgroundLooks : public QObject
{
    Q_OBJECT

public:
    /** Asked by a look whether nobody waits for it any more. */
    using ShouldEnd = std::function<bool()>;

    explicit BackgroundLooks(QObject *parent = nullptr);
    ~BackgroundLooks() override;

    /**
     * `look` gets a ShouldEnd to be asked as often as it can, and gives a value; `take` gets the value, or
     * never runs. The look has to hold by value all that it needs.
     */
    template <class Look, class Take>
    void run(const Look &look, const Take &take)
    {
        start([look, take](const ShouldEnd &shouldEnd) -> std::function<void()> {
            const auto found = std::make_shared<decltype(look(shouldEnd))>(look(shouldEnd));
            return [found, take] { take(*found); };
        });
    }
    /**
     * The same for who wants it now: waits up to some milliseconds for the look. False when `take` has yet to
     * run, which it does when the look comes back.
     */
    template <class Look, class Take>
    bool runShortly(int milliseconds, const Look &look, const Take &take)
    {
        struct Answer
        {
            QSemaphore isThere;
            std::optional<decltype(look(ShouldEnd()))> found;
            bool isTaken = false;
        };
        const auto answer = std::make_shared<Answer>();
        run(
            [answer, look](const ShouldEnd &shouldEnd) {
                answer->found.emplace(look(shouldEnd));
                answer->isThere.release();
                return true;
            },
            [answer, take](bool) {
                if (!answer->isTaken)
                    take(*answer->found);
            });
        if (!answer->isThere.tryAcquire(1, milliseconds))
            return false;
        answer->isTaken = true;
        take(*answer->found);
        return true;
    }
    /** Forgets what was begun: nothing of it is taken, and a look that runs is told to end. */
    void forget();
    /** The same for good; waits a moment for a look that runs, as those that are near their end mostly are.
     */
    void end();

private:
    struct Shared;
    using Job = std::function<std::function<void()>(const ShouldEnd &shouldEnd)>;

    void start(const Job &job);
    static void work(const std::shared_ptr<Shared> &shared);

    std::shared_ptr<Shared> m_shared;
};
