#pragma once

#include <atomic>
#include <functional>
#include <memory>

struct XBatchGetMaterialMetaData;

/// Told how a chain ended, true for success. May be empty. A chain calls it exactly once
/// a run; after that call the chain's tasks may be gone.
using FinishCallback = std::function<void(bool)>;

/// One step of a chain. Entered on the queue's worker, or on the thread that brought the
/// answer which the step before had asked for.
class IXTaskBase {
public:
    /// Runs the step with the material list of an earlier step, which stays valid only
    /// for the length of the call.
    virtual void check(const XBatchGetMaterialMetaData* data, FinishCallback finish) = 0;
    /// Runs the step without data. A chain is always entered here.
    virtual void check(FinishCallback finish) = 0;
    /// Links the following task and gives it back, so that chains are built as a row of
    /// calls. An earlier successor is released.
    virtual std::shared_ptr<IXTaskBase> setNext(std::shared_ptr<IXTaskBase> task) = 0;
    /// Marks this task and every following one as stopped. Any thread.
    virtual void stop() = 0;
    virtual ~IXTaskBase() = default;
};

/// Forwards to the next task, which it owns. A task that has done its work goes on by
/// calling the base's check on itself. At the end of the chain check returns silently
/// and calls no `finish`: the last task has to.
class XTaskBase : public IXTaskBase {
public:
    void check(const XBatchGetMaterialMetaData* data, FinishCallback finish) override;
    void check(FinishCallback finish) override;
    std::shared_ptr<IXTaskBase> setNext(std::shared_ptr<IXTaskBase> task) override;
    void stop() override;

protected:
    bool isStopped() const { return stopped; }
    bool hasNext() const { return next != nullptr; }

    /// Ends the chain. Nothing of the task may be used afterwards.
    static void end(const FinishCallback& finish, bool succ) {
        if (finish) {
            finish(succ);
        }
    }

private:
    std::atomic<bool> stopped = false; // set by the stopping thread, read in a transfer
    std::shared_ptr<IXTaskBase> next;
};
