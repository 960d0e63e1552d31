// Limits on what statements may cost, so that a crafted file can't keep the program busy or fill
// its memory: pages in a circle are walked for ever, and a page may name one cell many times, whose
// bytes are then returned again and again. The limits grow with the size of the file.
#pragma once

#include <QtGlobal>

#include <ctime>

namespace veltrona::sqlite {

class FileAccess;

class WorkLimit {
public:
    /// Null while no file is open; must outlive its use here.
    void setFiles(const FileAccess *files) { m_files = files; }

    /// Also for a statement that is prepared anew.
    void beginRun();
    void beginStatement();
    /// Allows the running command more steps, for work that the size of the file doesn't bound.
    void allow(qint64 steps) { m_allowed += steps; }

    /// Steps of SQLite's virtual machine. False once they are too many, for the run of a statement
    /// or for all those of a command, or have taken too much processor time.
    bool addSteps(int steps);
    /// Bytes of a text that a statement returns. No two values share a byte of a sound file, so
    /// false once they are more than the file can hold.
    bool addText(int bytes) {
        m_textBytes += bytes;
        return m_textBytes <= m_maxTextBytes || isPlausible();
    }

private:
    bool isPlausible();

    const FileAccess *m_files = nullptr;
    qint64 m_steps = 0;       // of the run
    std::clock_t m_began = 0; // after the run's first steps
    long m_command = 0;
    qint64 m_stepsOfCommand = 0;
    qint64 m_allowed = 0;
    qint64 m_textBytes = 0;    // of the statement
    qint64 m_maxTextBytes = 0; // by the size of the file when it was last asked for
};

} // namespace veltrona::sqlite
