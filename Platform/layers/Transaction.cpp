#include "Platform/layers/Transaction.h"

#include <vector>

namespace qm {

namespace {

struct State
{
    double duration = 0.25;
    TimingFunction timing = TimingFunction::Linear;
    bool disableActions = false;
};

// Outside every transaction changes jump: headless work never animates by accident.
std::vector<State>& stack()
{
    static std::vector<State> s;
    return s;
}

State& top()
{
    static State outside{0.0, TimingFunction::Linear, true};
    return stack().empty() ? outside : stack().back();
}

} // namespace

void Transaction::begin()
{
    stack().push_back(stack().empty() ? State{} : stack().back());
}

void Transaction::commit()
{
    if (!stack().empty())
        stack().pop_back();
}

bool Transaction::isOpen()
{
    return !stack().empty();
}

void Transaction::setAnimationDuration(double seconds)
{
    if (isOpen())
        top().duration = seconds;
}

double Transaction::animationDuration()
{
    return top().duration;
}

void Transaction::setAnimationTimingFunction(TimingFunction timing)
{
    if (isOpen())
        top().timing = timing;
}

TimingFunction Transaction::animationTimingFunction()
{
    return top().timing;
}

void Transaction::setDisableActions(bool disable)
{
    if (isOpen())
        top().disableActions = disable;
}

bool Transaction::disableActions()
{
    return top().disableActions;
}

} // namespace qm
