#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

/// A section of a page: a title, and content that pressing the title folds away and back. A screen
/// reader hears the title as a button that is expanded or collapsed. Open when it is made. GUI
/// thread.
class FoldableWidget : public QWidget
{
    Q_OBJECT

public:
    explicit FoldableWidget(const QString& title, QWidget* parent = nullptr);

    QPushButton* topBtn() const { return m_topBtn; }

    /// Where the section's content is built.
    QWidget* bottomWidget() const { return m_bottomWidget; }

    bool isFold() const { return m_isFold; }

public slots:
    /// Folds an open section, opens a folded one. The height is fixed to what is shown.
    void onHandleFold();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPushButton* m_topBtn;
    QWidget* m_bottomWidget;
    bool m_isFold = false;
    QLabel* m_splitterLine;
};
