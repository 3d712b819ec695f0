// The program vxattr: values in files, converted, shown, compared and sealed.

#include "run.h"

int main(int argc, char ** argv) {
    return vxattr::run(argc, argv);
}
