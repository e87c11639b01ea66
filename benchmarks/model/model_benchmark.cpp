// Time and memory per item of the engine's operations on projects of several sizes: each column should be as the one
// before it. Run it as model_benchmark [SIZE...], 1000 10000 100000 when no sizes are given.
#include <QString>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <malloc.h>
#include <map>
#include <memory>
#include <orrery/project.h>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

class Table
{
public:
    void measure(const std::string& name, int items, const std::function<void()>& function)
    {
        const std::size_t before = ::mallinfo2().uordblks;
        const auto start = std::chrono::steady_clock::now();
        function();
        const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - start;
        const auto memory = static_cast<double>(::mallinfo2().uordblks) - static_cast<double>(before);
        cell(name + " (us)", time.count() / items);
        if (memory > items)
            cell(name + " (bytes)", memory / items);
    }

    void print(const std::vector<int>& sizes) const
    {
        std::printf("%-44s", "per item, of so many:");
        for (const int size : sizes)
            std::printf("%12d", size);
        for (const std::string& row : m_order) {
            std::printf("\n%-44s", row.c_str());
            for (const double value : m_rows.at(row))
                std::printf("%12.2f", value);
        }
        std::printf("\n");
    }

private:
    void cell(const std::string& row, double value)
    {
        if (!m_rows.count(row))
            m_order.push_back(row);
        m_rows[row].push_back(value);
    }

    std::map<std::string, std::vector<double>> m_rows;
    std::vector<std::string> m_order;
};

void measureLayers(Table& table, int size)
{
    constexpr int sample = 1000;
    std::mt19937 random(1);
    Project project{QString(), nullptr};
    table.measure("add a layer", size, [&] {
        for (int i = 0; i < size; ++i)
            project.add_layer(nullptr, QString::fromLatin1("layer %1").arg(i), 0, 0);
    });
    QVector<Layer> layers;
    table.measure("list the layers", size, [&] { layers = project.get_layers(); });
    table.measure("find by place", sample, [&] {
        for (int i = 0; i < sample; ++i)
            project.layer(static_cast<unsigned int>(random()) % static_cast<unsigned int>(size));
    });
    table.measure("read and set the z order", sample, [&] {
        for (int i = 0; i < sample; ++i) {
            Layer& layer = layers[static_cast<int>(random() % static_cast<unsigned int>(size))];
            layer.set_z_order((layer.get_z_order() + size / 2) % size);
        }
    });
    table.measure("into a group of half of them", size / 2, [&] { project.add_group("group", layers.mid(size / 2)); });
    UndoGroup group = project.undo_group();
    table.measure("remove in any order", size, [&] {
        group.begin();
        std::shuffle(layers.begin(), layers.end(), random);
        for (Layer& layer : layers)
            layer.remove();
        group.commit();
    });
    table.measure("undo", size, [&] { group.undo(); });
    const QString file = QString::fromLatin1("/tmp/model-benchmark-%1").arg(::getpid());
    table.measure("save", size, [&] { project.save_as(file); });
    table.measure("open", size, [&] { Project(file, nullptr); });
    ::unlink(file.toLocal8Bit().constData());
}

void measureShapes(Table& table, int size)
{
    constexpr int sample = 300;
    Project project{QString(), nullptr};
    Layer layer = project.add_layer(nullptr, "layer", 0, 0);
    const BezierControlPointData point(true, false, 1.f, 2.f, 0.f, 0.f, QPointF(-1, 0), QPointF(1, 0));
    const QVector<BezierControlPointData> points(size, point);
    BezierContour contour;
    table.measure("add a contour's point", size, [&] { contour = layer.add_bezier_contour(0, points, View()); });
    table.measure("bound a contour's point", size, [&] { contour.get_bounding_rect(0, View()); });
    table.measure("insert into the middle of a contour", sample, [&] {
        for (int i = 0; i < sample; ++i)
            contour.insert_point(0, BezierControlPointData(), static_cast<unsigned int>(size / 2), View());
    });
    QVector<BezierControlPoint> all = contour.get_control_points();
    std::shuffle(all.begin(), all.end(), std::mt19937(3));
    UndoGroup group = project.undo_group();
    group.begin();
    table.measure("remove a contour's point, in any order", size, [&] {
        for (int i = 0; i < size; ++i)
            all[i].remove();
    });
    group.commit();
    table.measure("undo the points' removal", size, [&] { group.undo(); });
    Parameter opacity = layer.parameter({"opacity"});
    std::vector<int> times;
    for (int i = 0; i < size; ++i)
        times.push_back(i);
    std::shuffle(times.begin(), times.end(), std::mt19937(2));
    table.measure("set a keyframe, in any order", size, [&] {
        for (const int time : times)
            opacity.set(0.5, time, View());
    });
    table.measure("read between keyframes", size, [&] {
        for (const int time : times)
            opacity.get(time + 0.5, View());
    });
    table.measure("delete a keyframe", size, [&] {
        for (const int time : times)
            opacity.delete_keyframe(time, View());
    });
}

} // namespace

int main(int count, char** arguments)
{
    std::vector<int> sizes;
    for (int i = 1; i < count; ++i)
        sizes.push_back(std::max(1, std::atoi(arguments[i])));
    if (sizes.empty())
        sizes = {1000, 10000, 100000};
    Table table;
    for (const int size : sizes)
        measureLayers(table, size);
    for (const int size : sizes)
        measureShapes(table, size);
    table.print(sizes);
    return 0;
}
