// kv_bench: one table of what the component takes, beside the bare limit measured in the same run.
#include "rows.h"

int main(int argc, char **argv)
{
    bench::AddOpeningRows();
    bench::AddSizeRows();
    bench::AddClickRows();
    bench::AddSavingRows();
    bench::AddReportRows();
    bench::AddEmbeddedRows();
    bench::RunAll(argc, argv);
}
