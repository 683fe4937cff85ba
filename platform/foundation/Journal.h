// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/Value.h"

namespace platform {

/// In whose course something happens: the number of the event, or what somebody outside said of himself when
/// he asked for it. Nil when nobody did.
struct JournalCause {
    Value nearest;
    /// The same, past the calls: their readers are few, and to the others a call is as if it were not there.
    Value pastCalls;
};

/// One thing that the running phone did.
struct JournalEntry {
    /// "event" names its kind ("insert", "reload", "push", "local", "darwin", "darwinReceived", "store",
    /// "write", "removeFile", "log", "open", "call", …), beside the fields of that kind; "ok" is its outcome,
    /// where it has one and is over.
    Dictionary event;
    /// Grows with each event of this process, from 1.
    std::uint64_t id = 0;
    /// When it began, in milliseconds of the journal's clock.
    double at = 0;
    JournalCause cause;
    /// How long it took, for one that takes time and is over.
    std::optional<double> milliseconds;
    /// Whether it is a call of a screen's method, which only those are told who ask for that.
    bool isCall = false;
};

/// What the running phone did, in the order in which each thing began: rows inserted and removed,
/// notifications, files written, store calls, log lines; and what each came of. It is kept only while
/// somebody reads it. Usable from any thread.
///
/// What a thread does now is in the course of the innermost Course, Causing or Call that it has open. The run
/// loop and the global queue carry that over to the tasks that are given to them.
class Journal {
  public:
    /// An event's number; 0 for one that was not kept.
    using Id = std::uint64_t;

    static Journal& shared();

    /// Begins keeping events. Until then, and after stop(), events are dropped.
    void start();
    void stop();
    /// The fields of an event that has just a "name": for those that come often.
    struct Named {
        Value name;
    };
    /// Notes an event that takes no time.
    Id record(std::string event, Dictionary fields = {});
    Id record(std::string event, Named named);
    /// The events since the last call, oldest first; one that has not finished has no "ok" yet.
    std::vector<JournalEntry> take();
    /// How many events were recorded since the program began; grows with each, whoever takes them.
    std::uint64_t count() const;
    /// What an event that this thread began now would come of.
    static JournalCause presentCause();
    /// Replaces the clock, which otherwise counts the milliseconds since the program was loaded; an empty
    /// function brings that one back. Called with a lock held: it may not record.
    void setClock(std::function<double()> milliseconds);

    class Frame;
    class Course;
    class Causing;
    class Call;

  private:
    /// An entry before it is put together, which is done by who takes it: whoever adds it is not held up.
    struct Part {
        std::string event{};
        Dictionary fields{};
        Value name{};
        bool isCall = false;
        double at = 0;
        JournalCause cause{};
        std::optional<double> milliseconds{};
        std::optional<bool> ok{};
    };

    Journal() = default;
    Id add(Part part);
    void finish(Id id, std::optional<bool> ok);
    double now() const;
    static JournalEntry entryOf(Part&& part, Id id);

    mutable std::mutex mutex_;
    std::vector<Part> parts_;
    /// Of the first part.
    Id first_ = 1;
    bool keeping_ = false;
    std::function<double()> clock_;
};

/// What a thread is in the course of, as long as it lives. On the stack of one thread, and left in the
/// opposite order of entering.
class Journal::Frame {
  public:
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

  protected:
    Frame();
    ~Frame();

    friend class Journal;
    /// What happens within has this cause.
    virtual JournalCause cause() = 0;
    JournalCause outerCause() const;

  private:
    Frame* outer_;
};

/// An event that takes time: what happens before it ends comes of it.
class Journal::Course final : public Journal::Frame {
  public:
    explicit Course(std::string event, Dictionary fields = {});
    Course(std::string event, Named named);
    ~Course();
    /// The outcome.
    void setOk(bool ok) { ok_ = ok; }

  private:
    JournalCause cause() override { return cause_; }
    void begin(Part part);

    Id id_ = 0;
    JournalCause cause_;
    std::optional<bool> ok_;
};

/// What happens within comes of what is given, and of nothing around it.
class Journal::Causing final : public Journal::Frame {
  public:
    explicit Causing(JournalCause cause) : cause_(std::move(cause)) {}
    /// What somebody outside says of himself, or nil.
    explicit Causing(const Value& cause) : Causing(JournalCause{cause, cause}) {}
    ~Causing() = default;

  private:
    JournalCause cause() override { return cause_; }

    JournalCause cause_;
};

/// A call of a screen's method, the event "call". It becomes one with the first event that comes of it, if
/// not before: a getter that does nothing but answer is none.
class Journal::Call : public Journal::Frame {
  protected:
    Call() = default;
    ~Call();
    /// Makes it an event now.
    void note() { cause(); }

  private:
    /// False for a call that is no event whatever comes of it.
    virtual bool isNoted() const = 0;
    virtual Dictionary fields() const = 0;
    JournalCause cause() override;

    std::optional<Id> id_;
    JournalCause cause_;
};

}  // namespace platform
