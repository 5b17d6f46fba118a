#pragma once

#include <QWidget>

class CDetectInfo;
class VxOneKeyResultTree;

// The one-key page's result area: the result tree in a frame, and the export
// of its log.
class VxOneKeyResult : public QWidget
{
    Q_OBJECT
public:
    // Throws std::bad_alloc when the area cannot be built.
    explicit VxOneKeyResult(QWidget *pParent = nullptr);

    void clear();
    void updateItem(CDetectInfo *pInfo);
    void setUnavailable(int nItem, bool bUnreadable);
    int countOfSeverity(int nSeverity) const;
    void setRunFinished();
    bool isRunFinished() const { return m_bFinished; }
    // Writes the diagnosed rows' log as UTF-8 with CR LF; false when the file
    // cannot be written (then nothing is written).
    bool writeLog(const QString &strPath) const;

    VxOneKeyResultTree *tree() const { return m_pTree; }

signals:
    void sigRemoveOptimizeItem(int nItem);

private:
    VxOneKeyResultTree *m_pTree = nullptr;
    bool m_bFinished = false;
};
