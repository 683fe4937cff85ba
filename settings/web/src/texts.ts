// SPDX-License-Identifier: MIT
// The few words that belong to the page itself; everything else comes localised with the state.

const keys = [
    'back', 'delete', 'done', 'cancel', 'edit', 'save', 'add', 'share', 'post', 'send', 'selected', 'loading', 'darkMode',
    'search', 'clearText', 'noResults', 'results', 'untitled',
    'connecting', 'lost', 'unreachable', 'unreachableHint', 'retry', 'restarted', 'uninvited', 'empty', 'to', 'subject', 'attachments', 'settings', 'none', 'characters',
    'hours', 'minutes', 'dayHalf', 'alertTones', 'playing', 'noCalendars', 'noCalendarsHint', 'noNetworks', 'noNetworksHint', 'noTones', 'noTonesHint',
] as const;

export type Texts = Readonly<Record<(typeof keys)[number], string>>;

const tables: Readonly<Record<string, readonly string[]>> = {
    en: ['Back', 'Delete', 'Done', 'Cancel', 'Edit', 'Save', 'Add', 'Share', 'Post', 'Send', 'Selected', 'Loading', 'Dark Mode',
        'Search', 'Clear Text', 'No Results', 'Results: {count}', 'Untitled',
        'Connecting…', 'Connection lost. Reconnecting…', 'Settings cannot be reached', 'The connection is tried again by itself.', 'Try Again',
        'Settings was restarted. Open the address that it printed.', 'Open the address that Settings printed when it started.',
        'Nothing here yet', 'To:', 'Subject:', 'Attachments', 'Settings', 'None', 'Characters', 'Hours', 'Minutes', 'AM or PM',
        'Alert Tones', 'Playing {name}',
        'No Calendars', 'Calendars are folders of iCalendar files. Name their directory with `--device calendars=DIR`, or put them into `Library/Calendars` of the phone.',
        'No Networks', 'Networks are wireless connections that are saved on this computer. They are listed with `--device networks=system`; those of a file with `--device networks=FILE`, or from `Library/Preferences/known-networks.plist` of the phone.',
        'No Tones', 'Tones are listed on a tone screen of the system, and this system has no such screen. `--device toneController=NAME` names the one to use.'],
    de: ['Zurück', 'Löschen', 'Fertig', 'Abbrechen', 'Bearbeiten', 'Sichern', 'Hinzufügen', 'Teilen', 'Posten', 'Senden', 'Ausgewählt', 'Laden', 'Dunkelmodus',
        'Suchen', 'Text löschen', 'Keine Ergebnisse', 'Ergebnisse: {count}', 'Ohne Titel',
        'Verbinden …', 'Verbindung unterbrochen. Neuer Versuch …', 'Einstellungen nicht erreichbar', 'Die Verbindung wird von selbst erneut versucht.', 'Erneut versuchen',
        'Einstellungen wurde neu gestartet. Öffne die Adresse, die dabei ausgegeben wurde.', 'Öffne die Adresse, die Einstellungen beim Start ausgegeben hat.',
        'Noch nichts vorhanden', 'An:', 'Betreff:', 'Anhänge', 'Einstellungen', 'Ohne', 'Zeichen', 'Stunden', 'Minuten', 'Tageshälfte',
        'Hinweistöne', '{name} wird gespielt',
        'Keine Kalender', 'Kalender sind Ordner mit iCalendar-Dateien. Nenne ihr Verzeichnis mit `--device calendars=DIR` oder lege sie in `Library/Calendars` des Telefons ab.',
        'Keine Netzwerke', 'Netzwerke sind drahtlose Verbindungen, die auf diesem Computer gesichert sind. Sie erscheinen mit `--device networks=system`; die einer Datei mit `--device networks=FILE` oder aus `Library/Preferences/known-networks.plist` des Telefons.',
        'Keine Töne', 'Töne stehen auf einem Tonbildschirm des Systems, und dieses System hat keinen. `--device toneController=NAME` nennt den, der benutzt werden soll.'],
    fr: ['Retour', 'Supprimer', 'OK', 'Annuler', 'Modifier', 'Enregistrer', 'Ajouter', 'Partager', 'Publier', 'Envoyer', 'Sélectionné', 'Chargement', 'Mode sombre',
        'Rechercher', 'Effacer le texte', 'Aucun résultat', 'Résultats : {count}', 'Sans titre',
        'Connexion…', 'Connexion perdue. Nouvelle tentative…', 'Réglages inaccessibles', 'La connexion est retentée automatiquement.', 'Réessayer',
        'Réglages a redémarré. Ouvrez l’adresse affichée au démarrage.', 'Ouvrez l’adresse que Réglages a affichée au démarrage.',
        'Rien pour le moment', 'À :', 'Objet :', 'Pièces jointes', 'Réglages', 'Aucun', 'Caractères', 'Heures', 'Minutes', 'Matin ou après-midi',
        'Sons d’alerte', 'Lecture de {name}',
        'Aucun calendrier', 'Les calendriers sont des dossiers de fichiers iCalendar. Indiquez leur répertoire avec `--device calendars=DIR`, ou placez-les dans `Library/Calendars` du téléphone.',
        'Aucun réseau', 'Les réseaux sont les connexions sans fil enregistrées sur cet ordinateur. Elles apparaissent avec `--device networks=system` ; celles d’un fichier, avec `--device networks=FILE` ou depuis `Library/Preferences/known-networks.plist` du téléphone.',
        'Aucun son', 'Les sons figurent sur un écran de sons du système, et ce système n’en a pas. `--device toneController=NAME` indique celui à utiliser.'],
    es: ['Atrás', 'Eliminar', 'OK', 'Cancelar', 'Editar', 'Guardar', 'Añadir', 'Compartir', 'Publicar', 'Enviar', 'Seleccionado', 'Cargando', 'Modo oscuro',
        'Buscar', 'Borrar texto', 'Sin resultados', 'Resultados: {count}', 'Sin título',
        'Conectando…', 'Se perdió la conexión. Reconectando…', 'No se puede acceder a Ajustes', 'Se vuelve a intentar la conexión automáticamente.', 'Reintentar',
        'Ajustes se ha reiniciado. Abre la dirección que ha mostrado.', 'Abre la dirección que Ajustes mostró al iniciarse.',
        'Aún no hay nada', 'Para:', 'Asunto:', 'Archivos adjuntos', 'Ajustes', 'Ninguno', 'Caracteres', 'Horas', 'Minutos', 'Mañana o tarde',
        'Tonos de alerta', 'Reproduciendo {name}',
        'No hay calendarios', 'Los calendarios son carpetas de archivos iCalendar. Indica su directorio con `--device calendars=DIR` o ponlos en `Library/Calendars` del teléfono.',
        'No hay redes', 'Las redes son conexiones inalámbricas guardadas en este ordenador. Aparecen con `--device networks=system`; las de un archivo, con `--device networks=FILE` o desde `Library/Preferences/known-networks.plist` del teléfono.',
        'No hay tonos', 'Los tonos figuran en una pantalla de tonos del sistema, y este sistema no tiene ninguna. `--device toneController=NAME` indica cuál usar.'],
    ja: ['戻る', '削除', '完了', 'キャンセル', '編集', '保存', '追加', '共有', '投稿', '送信', '選択中', '読み込み中', 'ダークモード',
        '検索', 'テキストを消去', '結果なし', '検索結果：{count}件', '名称未設定',
        '接続中…', '接続が切れました。再接続中…', '設定に接続できません', '自動的に再接続します。', '再試行',
        '設定が再起動されました。表示されたアドレスを開いてください。', '設定の起動時に表示されたアドレスを開いてください。',
        'まだ項目がありません', '宛先:', '件名:', '添付ファイル', '設定', 'なし', '文字数', '時', '分', '午前または午後',
        '通知音', '{name}を再生中',
        'カレンダーがありません', 'カレンダーはiCalendarファイルのフォルダです。`--device calendars=DIR`でその場所を指定するか、電話の`Library/Calendars`に置いてください。',
        'ネットワークがありません', 'ネットワークは、このコンピュータに保存されたワイヤレス接続です。`--device networks=system`で表示されます。ファイルの一覧なら、`--device networks=FILE`で、または電話の`Library/Preferences/known-networks.plist`から表示されます。',
        '着信音がありません', '着信音はシステムの着信音画面に表示されますが、このシステムにはその画面がありません。`--device toneController=NAME`で使う画面を指定します。'],
    'zh-Hans': ['返回', '删除', '完成', '取消', '编辑', '存储', '添加', '共享', '发布', '发送', '已选择', '正在载入', '深色模式',
        '搜索', '清除文本', '无结果', '结果：{count}', '未命名',
        '正在连接…', '连接已断开，正在重新连接…', '无法连接到设置', '将自动重新连接。', '重试',
        '设置已重新启动。请打开它显示的地址。', '请打开设置启动时显示的地址。',
        '暂无内容', '收件人：', '主题：', '附件', '设置', '无', '字数', '小时', '分钟', '上午或下午',
        '提示音', '正在播放{name}',
        '没有日历', '日历是存放 iCalendar 文件的文件夹。请用 `--device calendars=DIR` 指定其所在目录，或将其放入手机的 `Library/Calendars`。',
        '没有网络', '网络是保存在此电脑上的无线连接。使用 `--device networks=system` 即可列出；文件中的网络可用 `--device networks=FILE` 列出，或从手机的 `Library/Preferences/known-networks.plist` 列出。',
        '没有提示音', '提示音列在系统的提示音屏幕上，而此系统没有这样的屏幕。`--device toneController=NAME` 可指定要使用的屏幕。'],
    ar: ['رجوع', 'حذف', 'تم', 'إلغاء', 'تحرير', 'حفظ', 'إضافة', 'مشاركة', 'نشر', 'إرسال', 'محدد', 'جارٍ التحميل', 'الوضع الداكن',
        'بحث', 'مسح النص', 'لا توجد نتائج', 'النتائج: {count}', 'بدون عنوان',
        'جارٍ الاتصال…', 'انقطع الاتصال. تجري إعادة الاتصال…', 'تعذر الوصول إلى الإعدادات', 'ستتم إعادة محاولة الاتصال تلقائيًا.', 'إعادة المحاولة',
        'أُعيد تشغيل الإعدادات. افتح العنوان الذي عرضته.', 'افتح العنوان الذي عرضته الإعدادات عند بدء التشغيل.',
        'لا يوجد شيء بعد', 'إلى:', 'الموضوع:', 'المرفقات', 'الإعدادات', 'لا شيء', 'الأحرف', 'الساعات', 'الدقائق', 'صباحًا أو مساءً',
        'نغمات التنبيه', 'يجري تشغيل {name}',
        'لا توجد تقويمات', 'التقويمات مجلدات تضم ملفات iCalendar. حدد مكانها باستخدام `--device calendars=DIR`، أو ضعها في `Library/Calendars` على الهاتف.',
        'لا توجد شبكات', 'الشبكات اتصالات لاسلكية محفوظة على هذا الكمبيوتر. تظهر باستخدام `--device networks=system`؛ أما شبكات ملف فتظهر باستخدام `--device networks=FILE`، أو من `Library/Preferences/known-networks.plist` على الهاتف.',
        'لا توجد نغمات', 'تظهر النغمات في شاشة النغمات الخاصة بالنظام، وليس لهذا النظام شاشة كهذه. يحدد `--device toneController=NAME` الشاشة المستخدمة.'],
};

const asTexts = (table: readonly string[]): Texts => Object.fromEntries(keys.map((key, at) => [key, table[at] ?? ''])) as Record<(typeof keys)[number], string>;

/** The words in the table that fits a language tag best: the tag itself, then its language, then English. */
export function textsFor(tag: string): Texts {
    const language = tag.split('-')[0] ?? 'en';
    const chosen = tables[tag] ?? tables[language] ?? (tag.startsWith('zh') ? tables['zh-Hans'] : undefined) ?? tables['en'];
    return asTexts(chosen as readonly string[]);
}

/** What the system's own bar buttons say, by item number; Add and Action are drawn as symbols and only spoken. */
export function systemItemText(texts: Texts, item: number): string {
    const byNumber: Readonly<Record<number, string>> = { 0: texts.done, 1: texts.cancel, 2: texts.edit, 3: texts.save, 4: texts.add, 9: texts.share };
    return byNumber[item] ?? texts.done;
}
