#pragma once

#include <memory>
#include <utility>

/// One run of something that waits for answers: an attempt to log in or to connect, or one step of
/// it. Whether an answer is still wanted is decided here alone: one that was asked for in an
/// earlier run is dropped, and so is one that comes when the run's owner is gone. To be used on
/// one thread.
class Attempt
{
public:
    /// A run as whoever waits remembers it.
    class Run
    {
    public:
        /// Whether that very run is still under way.
        bool isCurrent() const { return !m_run.expired(); }

    private:
        friend class Attempt;
        explicit Run(std::weak_ptr<const char> run) : m_run(std::move(run)) {}

        std::weak_ptr<const char> m_run;
    };

    Attempt() { begin(); }
    Attempt(const Attempt&) = delete;
    Attempt& operator=(const Attempt&) = delete;

    /// Starts anew: whatever waits for an earlier run waits in vain.
    void begin() { m_run = std::make_shared<const char>(); }

    /// The run that is under way.
    Run run() const { return Run(m_run); }

    /// Wraps a callback so that it is called only while the present run is under way.
    template <class Function>
    auto step(Function function) const
    {
        return [run = run(), call = std::move(function)](auto&&... arguments) {
            if (run.isCurrent())
                call(std::forward<decltype(arguments)>(arguments)...);
        };
    }

private:
    std::shared_ptr<const char> m_run;
};
