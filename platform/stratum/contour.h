// The engine's contours and control points, as far as they are read directly. The lifetime rule of layer_base.h holds
// for them too.
#ifndef STRATUM_CONTOUR_H
#define STRATUM_CONTOUR_H

#include <atomic>
#include <boost/shared_ptr.hpp>

namespace Stratum {

class Contour;

// One vertex of a contour.
class ControlPoint
{
public:
    ControlPoint(const ControlPoint&) = delete;
    ControlPoint& operator=(const ControlPoint&) = delete;
    virtual ~ControlPoint();

    // The point that this one follows, null when there is none. Safe to read from any thread.
    ControlPoint* master() const { return m_master.load(std::memory_order_acquire); }

    // The contour that holds, or held, the point; never null.
    Contour* contour() const { return m_contour; }

    // Tells the points of one contour apart; an id is not used again in its contour.
    unsigned int id() const { return m_id; }

protected:
    ControlPoint(Contour* contour, unsigned int id);

    std::atomic<ControlPoint*> m_master;

private:
    Contour* const m_contour;
    const unsigned int m_id;
};

// A closed spline.
class Contour
{
public:
    Contour(const Contour&) = delete;
    Contour& operator=(const Contour&) = delete;
    virtual ~Contour();

    // 0 for an X-spline, 1 for a Bezier spline (VX_CONTOUR_TYPE).
    int type() const { return m_type; }

    // The point with that id, also one that was removed; empty when the contour never had it.
    virtual boost::shared_ptr<ControlPoint> pointByID(unsigned int id) = 0;

protected:
    explicit Contour(int type);

private:
    const int m_type;
};

} // namespace Stratum

#endif
