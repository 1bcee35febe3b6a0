#!/bin/sh
# Inside a clean root of Debian, called by scripts/deb.sh: installs the packages in /tmp, runs what they
# hold on the example data, builds a program on the library, and takes them away again.
set -eu
cd /tmp
export DEBIAN_FRONTEND=noninteractive LC_ALL=C
apt_get() { apt-get -q -y --no-install-recommends "$@" >>/tmp/apt.log 2>&1 || { tail -n 20 /tmp/apt.log; exit 1; }; }
apt_get install ./kva_*.deb

echo "--- kva and kvatool"
mkdir try
cp /usr/share/doc/kva/examples/testdata.dat* try
cd try
[ -f testdata.dat ] || gunzip testdata.dat.gz
kva -i testdata.dat >console.txt || [ $? = 1 ] # its status after a run
ls testdata.dat_KVAresult00
kvatool check testdata.dat | head -n 3
kvatool run testdata.dat -o results --seed 1 --fst pairs --permutations 1000 -q
kvatool report results -o report.html
grep -c '<svg' report.html
[ -n "$(ls /usr/share/man/man1/kva.1* /usr/share/man/man1/kvatool.1*)" ]

echo "--- a program on the library"
cd /tmp
apt_get install ./libkva-dev_*.deb g++ cmake make
cp -R /usr/share/doc/kva/examples/library program
cmake -S program -B program/build >/dev/null
cmake --build program/build >/dev/null
find program/build -maxdepth 1 -type f -perm -u+x -exec {} try/testdata.dat \; | head -n 4

echo "--- R"
apt_get install ./r-kva_*.deb
Rscript -e 'x <- kva::read_kva("try/results"); stopifnot(nrow(kva::fst(x)) == 8); print(x)'

echo "--- removed"
apt_get purge kva libkva-dev r-kva
left=$(find /usr /etc /var/lib -name '*kva*' ! -path '*/dpkg/*' ! -path '*/apt/*')
[ -z "$left" ] || { echo "left behind: $left" && exit 1; }
