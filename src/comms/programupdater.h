#pragma once

#include <QString>

// How the program hands over to a received program update: the updater is started on its own
// and the program ends at once (no window is asked or unloaded).
class ProgramUpdater {
public:
    virtual ~ProgramUpdater() = default;
    // Starts the updater detached, minimised; false when it could not be started.
    virtual bool start(const QString& updaterPath) = 0;
    // Ends the process immediately.
    virtual void endProgram() = 0;
};

// The updater of a real run.
class DetachedUpdater final : public ProgramUpdater {
public:
    bool start(const QString& updaterPath) override;
    void endProgram() override;
};
