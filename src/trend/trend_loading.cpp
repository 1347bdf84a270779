#include "trend/trend_loading.h"

#include <QElapsedTimer>
#include <new>
#include <utility>

#include "platform/failure.h"

namespace orvane::trend {

namespace {

/// As long as nobody sees a picture late.
constexpr qint64 kSliceMs = 8;
constexpr platform::RowIndex kRowsAtOnce = 1'000;

}  // namespace

QString SentenceOfTrend(const std::exception& exception) {
  if (dynamic_cast<const std::bad_alloc*>(&exception) != nullptr) {
    return QStringLiteral(
        "There is not enough memory for the trend; choose a shorter range of time.");
  }
  return QString::fromUtf8(exception.what());
}

TrendLoading::TrendLoading(Calls calls, QObject* parent)
    : QObject(parent), m_calls(std::move(calls)) {
  m_slices.setSingleShot(true);
  m_slices.setInterval(0);
  connect(&m_slices, &QTimer::timeout, this, [this] { ReadSlice(); });
}

void TrendLoading::Load(platform::RecordsetPtr rs, TrendColumns columns,
                        const zones::TimeZone& zone, SeenRows seen) {
  Drop();
  m_reader =
      std::make_shared<TrendReader>(std::move(rs), std::move(columns), zone, std::move(seen));
  Go();
}

void TrendLoading::Drop() {
  m_worker = {};
  ++m_nRun;
  m_bOrdering = false;
  m_reader.reset();
  m_slices.stop();
}

void TrendLoading::Go() {
  if (m_reader && !m_bOrdering && m_calls.seen()) m_slices.start();
}

void TrendLoading::ReadSlice() {
  if (!m_reader) return;
  bool bMore = true;
  try {
    QElapsedTimer timer;
    timer.start();
    while (bMore && timer.elapsed() < kSliceMs) bMore = m_reader->Read(kRowsAtOnce);
  } catch (const std::exception& failed) {
    return End({.sWhyNot = SentenceOfTrend(failed)});
  }
  if (!bMore) return Order();
  m_calls.progress(m_reader->Progress());
  Go();
}

void TrendLoading::Order() {
  m_bOrdering = true;
  m_worker =
      std::jthread([this, reader = m_reader, nRun = m_nRun](const std::stop_token& stop) mutable {
        QString sWhyNot;
        try {
          reader->Finish(stop);
        } catch (const std::exception& failed) {
          sWhyNot = SentenceOfTrend(failed);
        }
        reader.reset();
        if (stop.stop_requested()) return;
        QMetaObject::invokeMethod(
            this,
            [this, nRun, sWhyNot] {
              if (nRun != m_nRun) return;
              if (!sWhyNot.isEmpty()) return End({.sWhyNot = sWhyNot});
              End({m_reader->TakeLines(), m_reader->TagsLeftOut(), m_reader->CutAfter()});
            },
            Qt::QueuedConnection);
      });
}

void TrendLoading::End(Loaded loaded) {
  Drop();
  const auto done = m_calls.done;
  done(std::move(loaded));
}

}  // namespace orvane::trend
