#pragma once

namespace qm {

enum class TimingFunction { Linear, EaseInEaseOut };

/// Groups layer changes and says how position changes in it are to be animated. Transactions
/// nest; a nested one starts with the values of the one around it. Nothing waits: the model
/// values change at once and a view replays the recorded animations.
class Transaction
{
public:
    static void begin();
    static void commit();
    /// True between begin() and the matching commit().
    static bool isOpen();

    static void setAnimationDuration(double seconds);
    static double animationDuration();
    static void setAnimationTimingFunction(TimingFunction timing);
    static TimingFunction animationTimingFunction();
    /// While set, changes jump instead of animating.
    static void setDisableActions(bool disable);
    static bool disableActions();
};

/// Opens a transaction for the lifetime of the object.
class TransactionScope
{
public:
    TransactionScope() { Transaction::begin(); }
    ~TransactionScope() { Transaction::commit(); }
    TransactionScope(const TransactionScope&) = delete;
    TransactionScope& operator=(const TransactionScope&) = delete;
};

} // namespace qm
