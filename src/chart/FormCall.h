// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace clivara {

// What a form is asked that another one opens, and what it answers. Each form that is opened so has a type of its own.
struct FormCall {
    virtual ~FormCall() = default;
};

// A form that is opened by a call.
class CalledForm {
public:
    virtual ~CalledForm() = default;
    // Before the form is shown. The call outlives the showing, and the form leaves its answer there.
    virtual void take(FormCall &call) = 0;
};

template <typename Call>
class CalledBy : public CalledForm {
public:
    void take(FormCall &call) final { m_call = &dynamic_cast<Call &>(call); }

protected:
    // While the form is shown.
    Call &call() const { return *m_call; }

private:
    Call *m_call = nullptr;
};

} // namespace clivara
